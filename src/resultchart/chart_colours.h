#pragma once

#include <QColor>

namespace velumar {

inline constexpr QColor kSeriesGreen(0, 192, 0);

// The colours of a chart's ground; the series has its own.
struct ChartColours {
  QColor ground;
  QColor text;
  QColor faint;  // numbers and dates
  QColor frame;
  QColor grid;
  QColor floor;  // of a chart with depth
  QColor shadow;
  QColor hint;  // ground of the pointer's text

  static ChartColours Light();
  static ChartColours Dark();
  // The same on a wall that was painted white.
  ChartColours OnWhiteWall() const;
};

}  // namespace velumar
