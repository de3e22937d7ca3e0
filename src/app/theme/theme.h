#pragma once

#include <QColor>
#include <QString>

#include "app/theme/fonts.h"
#include "charts/palette.h"

namespace velumar {

// How all windows of this process look.
struct Appearance {
  Palette palette;
  Typefaces faces;
  QString date_format;  // in the letters d, M, y
};

QColor ToQColor(Colour colour);

// Contrast of two opaque colours, 1 (none) to 21 (black on white).
double Contrast(const QColor& a, const QColor& b);

// The colour, or the nearest shade of it that can be read on that background.
QColor ReadableOn(const QColor& background, const QColor& colour);

}  // namespace velumar
