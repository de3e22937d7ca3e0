#include "charthost/indicators/day_levels.h"

#include <algorithm>

#include "base/dates.h"

namespace velumar {

IndicatorLines DayVwap::operator()(const Bar& bar) {
  if (bar.date != date_) *this = {};
  date_ = bar.date;
  const double volume = std::max(0.0F, bar.volume);
  money_ += (double{bar.high} + bar.low + bar.close) / 3 * volume;
  volume_ += volume;
  return Lines(volume_ > 0 ? money_ / volume_ : kNoValue);
}

// A date that isn't real counts as part of the week before it.
std::int64_t PeriodBefore::NumberOf(std::int32_t date) const {
  if (period_ == Period::kDay) return date;
  constexpr int kThursday = 3;  // 1 January 1970, from Monday on
  return IsRealDate(date) ? (DayNumber(date) + kThursday + 7'000'000) / 7 : number_;
}

IndicatorLines PeriodBefore::operator()(const Bar& bar) {
  const std::int64_t number = NumberOf(bar.date);
  if (!current_ || number != number_) {
    before_ = current_;
    current_ = {bar.high, bar.low, bar.close};
    number_ = number;
  } else {
    current_->high = std::max<double>(current_->high, bar.high);
    current_->low = std::min<double>(current_->low, bar.low);
    current_->close = bar.close;
  }
  return before_ ? Lines(before_->high, before_->low, before_->close) : Lines(kNoValue);
}

}  // namespace velumar
