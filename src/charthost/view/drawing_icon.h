#pragma once

#include <QIcon>
#include <optional>

#include "charthost/drawings/drawing.h"

namespace velumar {

enum class DrawingAct { kSelect, kUndo, kRedo, kDuplicate, kDelete, kList };

// Line art in the colour of the texts of the application's palette, sharp at every size.
QIcon DrawingIcon(DrawingKind kind);
QIcon DrawingIcon(DrawingAct act);

}  // namespace velumar
