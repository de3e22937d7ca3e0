#pragma once

#include <vector>

#include "marketdata/bar.h"

namespace velumar {

// The bars of one chart.
struct BarSeries : BarArrays {
  // Set by DescribeSeries.
  bool has_opens = false;  // false if the data file stores none, so that every open is 0
  bool has_volumes = false;
  bool has_times = false;
  int decimals = 2;  // of displayed prices

  int size() const { return static_cast<int>(dates.size()); }
};

// Fills in the fields below the arrays. The decimals are found from a sample of the bars.
void DescribeSeries(BarSeries& series);

}  // namespace velumar
