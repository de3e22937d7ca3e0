#pragma once

#include <optional>

#include "charthost/indicators/averages.h"

namespace velumar {

// How far the price has moved within a bar and from the close before it. All of J. Welles Wilder,
// "New Concepts in Technical Trading Systems", 1978.

// The largest of high - low, |high - previous close| and |low - previous close|; high - low without
// a previous bar.
double TrueRange(const Bar& bar, const std::optional<Bar>& previous);

// Average true range: Wilder's average of the true range. Period 1 to 999, usually 14.
class AverageTrueRange {
 public:
  explicit AverageTrueRange(int period) : average_(WilderAverage(period)) {}
  double Add(const Bar& bar);
  IndicatorLines operator()(const Bar& bar) { return Lines(Add(bar)); }

 private:
  SmoothedAverage average_;
  std::optional<Bar> previous_;
};

// Directional movement: ADX, +DI and -DI. The directional movement of a bar is what its high is
// above the last one (+DM) or its low below the last one (-DM), whichever is larger, and 0 for the
// other.
//   +DI = 100 x average(+DM) / average(true range),  -DI in the same way
//   DX  = 100 x |+DI - -DI| / (+DI + -DI)
//   ADX = average(DX)
// with Wilder's averages; the first bar has no movement and its range does not count. Period 1 to
// 999, usually 14: the DI begin at bar 15, the ADX at bar 28.
class DirectionalMovement {
 public:
  explicit DirectionalMovement(int period);
  IndicatorLines operator()(const Bar& bar);

 private:
  SmoothedAverage range_;
  SmoothedAverage up_;
  SmoothedAverage down_;
  SmoothedAverage index_;
  std::optional<Bar> previous_;
};

}  // namespace velumar
