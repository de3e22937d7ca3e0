#pragma once

#include <cstdint>
#include <vector>

namespace velumar {

// The bars of one chart as parallel arrays, oldest first. Dates are yyyymmdd, times hhmmss.
struct BarSeries {
  std::vector<std::int32_t> dates;
  std::vector<std::int32_t> times;
  std::vector<float> opens;
  std::vector<float> highs;
  std::vector<float> lows;
  std::vector<float> closes;
  std::vector<float> volumes;

  // What DescribeSeries finds out about the arrays.
  bool has_opens = false;  // false where the data file stores none and every open reads as 0
  bool has_volumes = false;
  bool has_times = false;
  int decimals = 2;  // that its prices are shown with

  int size() const { return static_cast<int>(dates.size()); }
};

// Fills in the fields below the arrays. Constant in effort for the decimals, linear else.
void DescribeSeries(BarSeries& series);

}  // namespace velumar
