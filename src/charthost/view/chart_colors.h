#pragma once

#include <QColor>
#include <QPalette>
#include <array>

namespace velumar {

// Every colour of a chart. Each stands out against the background by at least 3 to 1, texts by
// more than 4.5 to 1, but for the grid, which is meant to be calm.
struct ChartColors {
  QColor background;
  QColor grid;
  QColor strong_grid;
  QColor frame;
  QColor text;
  QColor faint_text;
  QColor up;
  QColor down;
  QColor up_volume;
  QColor down_volume;
  QColor line;
  std::array<QColor, 2> averages;
  QColor crosshair;
  QColor tag;
  QColor tag_text;
  QColor error;
};

// The dark or the light set, as the palette of the windows is.
const ChartColors& ColorsFor(const QPalette& palette);

}  // namespace velumar
