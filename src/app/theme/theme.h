#pragma once

#include <QColor>
#include <QPalette>
#include <QString>

#include "forms/control.h"

namespace velumar {

// The colours of everything that is drawn by code; the artwork has a set of the same name.
struct Theme {
  bool dark;
  QColor window;  // ground of a window without artwork, and of dialogs
  QColor edge;    // outline of windows
  QColor field;   // ground of boxes and lines
  QColor tick;    // ground of a check box on light green
  QColor value;   // ground of a figure that was reckoned
  QColor text;    // on window and field, where the logic names no colour
  QColor faint;   // disabled texts
  QColor border;  // outline of boxes
  QColor accent;  // focus, selection, slider
  QColor on_accent;
  QColor button;
  QColor groove;

  static Theme Light();
  static Theme Dark();
  // The set that goes with the colours that the desktop asks for.
  static Theme Following(const QPalette& system);

  QString ArtSet() const;
  QPalette Palette() const;
};

QColor ToQColor(Colour colour);

// Contrast of two solid colours, 1 (none) to 21 (black on white).
double Contrast(const QColor& a, const QColor& b);

// The colour itself where it can be read well on that ground, else the nearest shade of it that
// can.
QColor ReadableOn(const QColor& ground, const QColor& colour);

}  // namespace velumar
