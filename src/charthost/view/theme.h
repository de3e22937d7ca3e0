#pragma once

#include <QApplication>

#include "charthost/chart_model.h"

namespace velumar {

// The look of all windows: one style on every desktop, in the colours of the system or in our own
// light or dark ones. Alt alone does nothing, so that keys from outside never end up in the menu
// bar.
void InstallStyle();
void ApplyTheme(ChartTheme theme);

// Three candles.
QIcon ProgramIcon();

}  // namespace velumar
