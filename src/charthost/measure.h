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

// What the trader would buy.
struct Stake {
  double quantity = 0;
  double profit_per_point = 0;  // money of one unit
};

// What lies between two places, signed by the direction from one to the other: bars, calendar days,
// and the difference of the prices in points, in percent of the first and in money for the stake,
// "-12 bars, -16 days, -1.25 (-0.83%), -2,500.00 for quantity 2". Without percent for a price that
// isn't above 0, and without money for no stake.
std::string DistanceText(const BarSeries& series, const ChartPlace& from, const ChartPlace& to,
                         const Stake& stake = {});

}  // namespace velumar
