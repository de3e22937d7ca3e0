#pragma once

#include <string>

#include "charthost/bar_series.h"

namespace velumar {

// A place on a chart.
struct ChartPlace {
  int bar = 0;  // of the series
  double price = 0;

  bool operator==(const ChartPlace&) const = default;
};

// What lies between two places, signed by the direction from one to the other: bars, calendar days,
// and the difference of the prices in points and percent of the first, "-12 bars, -16 days, -1.25
// (-0.83%)". Without percent for a price that isn't above 0.
std::string DistanceText(const BarSeries& series, const ChartPlace& from, const ChartPlace& to);

}  // namespace velumar
