#pragma once

#include <cstdint>
#include <optional>

#include "charthost/indicators/indicator.h"

namespace velumar {

// What a day or a week has traded at so far, or the one before it. A day is a date of the bars, a
// week begins on Monday.

// The average price of the day, weighted by volume: the sum of (high + low + close) / 3 x volume
// over the sum of the volumes, from the first bar of the date on. Stephen A. Berkowitz, Dennis E.
// Logue and Eugene A. Noser, "The Total Cost of Transactions on the NYSE", Journal of Finance 43,
// 1988. No value until the day has volume. Of a daily bar it is the mean of its prices.
class DayVwap {
 public:
  IndicatorLines operator()(const Bar& bar);

 private:
  std::int32_t date_ = 0;
  double money_ = 0;
  double volume_ = 0;
};

// High, low and close of the day or week before that of the bar.
class PeriodBefore {
 public:
  enum class Period { kDay, kWeek };

  explicit PeriodBefore(Period period) : period_(period) {}
  IndicatorLines operator()(const Bar& bar);

 private:
  struct Extent {
    double high;
    double low;
    double close;
  };

  std::int64_t NumberOf(std::int32_t date) const;

  Period period_;
  std::int64_t number_ = 0;
  std::optional<Extent> current_;
  std::optional<Extent> before_;
};

}  // namespace velumar
