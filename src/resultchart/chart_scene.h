#pragma once

#include <QColor>
#include <QPointF>
#include <span>
#include <string>
#include <vector>

#include "resultchart/chart_colours.h"
#include "resultchart/chart_type.h"

namespace velumar {

// The portfolio's value at each closing, oldest first.
struct ChartPoints {
  std::vector<std::string> labels;
  std::vector<double> values;
  std::string hint;  // in place of the series when there are no values
};

// What the painted parts of one chart share.
struct ChartScene {
  ChartPoints points;
  ChartType type = ChartType::k2DLine;
  QColor series = kSeriesGreen;
  bool shadow = false;
  bool white_wall = false;
  ChartColours colours = ChartColours::Light();
  QPointF depth;  // from the front to the back in pixels; null for a flat chart

  ChartColours WallColours() const { return white_wall ? colours.OnWhiteWall() : colours; }
};

}  // namespace velumar
