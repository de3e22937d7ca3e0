#pragma once

#include <string>
#include <vector>

#include "charthost/bar_series.h"

namespace velumar {

// A mark on the date axis, which counts bars, so closed days leave no gap.
struct DateTick {
  int bar;
  std::string text;
  bool strong;  // a new year, or a new day among times

  bool operator==(const DateTick&) const = default;
};

// The bars that the axis shows.
struct AxisStretch {
  int first_bar;
  int last_bar;  // included
  double pixels_per_bar;
};

// Marks the bars that begin a year, quarter, month, week, day, hour or a few minutes: the finest of
// these steps whose marks keep `min_pixels` between them. One of the first marks shows the full
// date if there is room.
std::vector<DateTick> DateTicks(const BarSeries& series, const AxisStretch& stretch,
                                double min_pixels);

}  // namespace velumar
