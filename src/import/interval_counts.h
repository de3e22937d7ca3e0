#pragma once

#include <array>
#include <cstdint>

#include "marketdata/bar.h"
#include "marketdata/interval.h"

namespace velumar {

// How many bars a series would have at each interval that can be replayed: of the intervals of a
// day, those that hold a bar. So a question can say what each answer gives before bars are made.
class IntervalCounts {
 public:
  // The next bar in time order, or in the opposite order.
  void Add(const Bar& bar);
  // `interval` is one of kReplayIntervals.
  std::int64_t Of(int interval) const;

 private:
  // For each of kReplayIntervals.
  std::array<std::int64_t, kReplayIntervals.size()> counts_{};
  // The interval that holds the last bar, numbered from 1.
  std::array<std::int64_t, kReplayIntervals.size()> last_{};
  BarKey five_minutes_ = 0;  // that hold the last bar
};

}  // namespace velumar
