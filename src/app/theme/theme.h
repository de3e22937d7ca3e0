#pragma once

#include <QColor>
#include <QPalette>
#include <QString>

#include "app/theme/fonts.h"

namespace velumar {

// The colours of everything drawn by code. The artwork has a set of pictures for each theme.
struct Theme {
  bool dark;
  QColor window;  // background of windows without artwork, and of dialogs
  QColor edge;    // outline of windows
  QColor field;   // background of boxes and lines
  QColor tick;    // background of a check box on light green
  QColor value;   // background of a computed figure
  QColor text;    // on window and field, unless the logic sets a colour
  QColor faint;   // disabled text
  QColor border;  // outline of boxes
  QColor accent;  // focus, selection, slider
  QColor on_accent;
  QColor button;
  QColor groove;

  static Theme Light();
  static Theme Dark();
  // Dark if the windows of the desktop are dark.
  static Theme Following(const QPalette& system);

  QPalette Palette() const;
};

// How all windows of this process look.
struct Appearance {
  Theme theme;
  Typefaces faces;
  QString date_format;  // in the letters d, M, y
};

QColor ToQColor(Colour colour);

// Contrast of two opaque colours, 1 (none) to 21 (black on white).
double Contrast(const QColor& a, const QColor& b);

// The colour, or the nearest shade of it that can be read on that background.
QColor ReadableOn(const QColor& background, const QColor& colour);

}  // namespace velumar
