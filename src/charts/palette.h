#pragma once

#include <QColor>
#include <QPalette>
#include <array>

namespace velumar {

// The colours of all windows and charts, light or dark. Texts have a contrast of at least 4.5 to 1
// with their background, lines and bars of at least 3 to 1; only the grid is fainter.
struct Palette {
  bool dark;

  QColor window;  // background of windows and dialogs
  QColor edge;    // outline of windows
  QColor field;   // background of boxes, lists and price charts
  QColor tick;    // background of a check box on light green
  QColor value;   // background of a computed figure
  QColor text;
  QColor faint;   // disabled texts
  QColor border;  // outline of boxes and charts
  QColor accent;  // focus, selection, slider
  QColor on_accent;
  QColor button;
  QColor groove;

  QColor ground;  // background of the result chart
  QColor muted;   // numbers and dates on the axes of a chart
  QColor grid;
  QColor strong_grid;  // where a new year, month or day begins
  QColor floor;        // of a chart with depth
  QColor shadow;
  QColor hint;  // background of the text next to the pointer
  QColor up;
  QColor down;
  QColor up_volume;
  QColor down_volume;
  QColor line;
  // Of indicators: distinct with any colour vision.
  std::array<QColor, 8> indicators;
  QColor crosshair;
  QColor tag;  // background of a value or date on an axis
  QColor on_tag;
  QColor error;

  static const Palette& Light();
  static const Palette& Dark();
  // The same with blue for up and orange for down, which differ with any colour vision.
  static const Palette& SafeLight();
  static const Palette& SafeDark();
  // The set that matches the colours of the system or of a window.
  static const Palette& Following(const QPalette& system, bool safe = false);

  QPalette ForWidgets() const;
};

// The portfolio's line or bars until the trader chooses another colour.
inline constexpr QColor kSeriesGreen(0, 192, 0);

}  // namespace velumar
