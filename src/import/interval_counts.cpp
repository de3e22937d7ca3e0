#include "import/interval_counts.h"

#include <algorithm>
#include <utility>

#include "base/dates.h"

namespace velumar {

namespace {

constexpr std::int64_t kMinutesOfDay = 1440;

// Since a day before all market data.
std::int64_t MinutesOf(const Bar& bar) {
  constexpr std::int64_t kEarliestDay = 30000;  // before 1970
  return (DayNumber(bar.date) + kEarliestDay) * kMinutesOfDay + MinuteOfDay(bar.time);
}

}  // namespace

// A bar in the same five minutes as the one before is in the same bar of any interval.
void IntervalCounts::Add(const Bar& bar) {
  const BarKey five_minutes = TimestampKey(bar.date, bar.time / 500);
  if (std::exchange(five_minutes_, five_minutes) == five_minutes) return;
  const std::int64_t minutes = MinutesOf(bar);
  for (std::size_t i = 0; i < kReplayIntervals.size(); ++i) {
    const int interval = kReplayIntervals.at(i);
    const std::int64_t place = minutes / (interval == kDaily ? kMinutesOfDay : interval) + 1;
    if (std::exchange(last_.at(i), place) != place) ++counts_.at(i);
  }
}

std::int64_t IntervalCounts::Of(int interval) const {
  const auto* const place = std::ranges::find(kReplayIntervals, interval);
  return counts_.at(static_cast<std::size_t>(place - kReplayIntervals.begin()));
}

}  // namespace velumar
