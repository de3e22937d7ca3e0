#pragma once

#include <string>
#include <vector>

#include "charthost/bar_series.h"

namespace velumar {

// A mark on the date axis, which counts bars and so leaves no gap for closed days.
struct DateTick {
  int bar;
  std::string text;
  bool strong;  // a new year, or a new day among times

  bool operator==(const DateTick&) const = default;
};

// The part of the series that the axis shows.
struct AxisStretch {
  int first_bar;
  int last_bar;  // included
  double pixels_per_bar;
};

// Marks the bars at which a year, quarter, month, week, day, hour or few minutes begin, in the
// finest of these steps whose marks keep `min_pixels` from each other. One of the first marks tells
// the whole date where there is room, so that the reader knows the year.
std::vector<DateTick> DateTicks(const BarSeries& series, const AxisStretch& stretch,
                                double min_pixels);

}  // namespace velumar
