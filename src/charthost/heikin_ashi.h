#pragma once

#include "charthost/bar_series.h"

namespace velumar {

// Candles that show the direction more than the prices ("average bar"): Dan Valcu, "Using the
// Heikin-Ashi Technique", Technical Analysis of Stocks & Commodities 22, 2004.
//   close = (open + high + low + close) / 4
//   open  = (open + close) / 2 of the Heikin-Ashi bar before; of the bar itself for the first
//   high, low: of the bar with these two
// A bar without an open counts with its close instead.
class HeikinAshi {
 public:
  // The bars from this one on are going to be replaced.
  void Forget(int first);
  // Appends the bars that are missing. One more bar costs one step.
  const BarSeries& Of(const BarSeries& series);

 private:
  void Append(const BarSeries& series, int bar);

  BarSeries bars_;
};

}  // namespace velumar
