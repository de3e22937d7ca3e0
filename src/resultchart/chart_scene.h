#pragma once

#include <QPointF>
#include <array>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "charts/palette.h"

namespace velumar {

// The numbers are those of the entries in the result window.
enum class ChartType { k3DBar = 0, k2DBar = 1, k3DLine = 2, k2DLine = 3, k2DArea = 5, k3DStep = 6 };

struct ChartTypeName {
  ChartType type;
  std::string_view text;
};

inline constexpr std::array<ChartTypeName, 6> kChartTypes = {{{ChartType::k2DBar, "2D Bar"},
                                                              {ChartType::k3DBar, "3D Bar"},
                                                              {ChartType::k2DLine, "2D Line"},
                                                              {ChartType::k2DArea, "2D Area"},
                                                              {ChartType::k3DLine, "3D Line"},
                                                              {ChartType::k3DStep, "3D Step"}}};

std::optional<ChartType> ChartTypeOf(std::string_view text);

// The portfolio's value at each closing, oldest first. Both lists have the same length.
struct ChartPoints {
  std::vector<std::string> labels;
  std::vector<double> values;
  std::string hint;  // shown instead of the chart if there are no values
};

// What the trader chooses.
struct ChartStyle {
  ChartType type = ChartType::k2DLine;
  QColor series = kSeriesGreen;
  bool shadow = false;
  bool white_wall = false;  // the wall next to the series is white in every theme

  bool HasDepth() const {
    return type == ChartType::k3DBar || type == ChartType::k3DLine || type == ChartType::k3DStep;
  }
  bool IsLine() const { return !StandsOnBase() || type == ChartType::k2DArea; }
  // True if it is filled from a base line, so that its height is read.
  bool StandsOnBase() const { return type != ChartType::k2DLine && type != ChartType::k3DLine; }
};

// What the parts of one chart share.
struct ChartScene {
  ChartPoints points;
  ChartStyle style;
  Palette colours = Palette::Light();
  QPointF depth;  // from the front to the back in pixels; null for a flat chart

  // For what is drawn on the wall.
  const Palette& WallColours() const { return style.white_wall ? Palette::Light() : colours; }
};

// A range of an axis that counts points: point i lies at i.
struct AxisSpan {
  double first;
  double last;

  double Size() const { return last - first; }
  bool operator==(const AxisSpan&) const = default;
};

struct ThinnedBar {
  double place;  // of its middle
  double value;

  bool operator==(const ThinnedBar&) const = default;
};

// One bar for every `points_per_bar` values within the span: the value that is farthest from zero.
// Bars begin at multiples of that number, so scrolling doesn't change them.
std::vector<ThinnedBar> ThinnedBars(std::span<const double> values, const AxisSpan& span,
                                    int points_per_bar);

struct ValueSpan {
  double lower;
  double upper;

  bool operator==(const ValueSpan&) const = default;
};

// The range of the value axis for the points within the span, with a margin. Values on a base line
// start at zero unless they are so close together that no difference would be visible.
ValueSpan FittingValues(std::span<const double> values, const AxisSpan& span, bool on_base);

}  // namespace velumar
