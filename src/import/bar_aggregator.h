#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "marketdata/bar.h"

namespace velumar {

// Merges bars into longer ones: the first open, the highest high, the lowest low, the last close
// and open interest, the sum of the volumes. A longer bar starts on the clock, at the full hour or
// a multiple of its interval after it, and never spans two days. Bars are added in time order, or
// all in the opposite order, with the same result.
class BarAggregator {
 public:
  // `interval` is kDaily, or minutes that divide an hour.
  BarAggregator(int interval, bool backwards) : interval_(interval), backwards_(backwards) {}

  // Returns the bar before, if `bar` begins another one.
  std::optional<Bar> Add(const Bar& bar);
  // Returns the bar that is still open.
  std::optional<Bar> Finish();

  // After Finish: true if the newest bar lasts to the end of its interval, or if on enough other
  // days the bar of the same time ended as early, as at the end of a session. `spacing` is that of
  // the added bars, in seconds.
  bool NewestIsComplete(int spacing) const;
  // The same of the oldest bar and the start of its interval.
  bool OldestIsComplete(int spacing) const;

 private:
  // The times of a bar's interval and of the first and last bar that were merged into it.
  struct Part {
    std::int32_t start = 0;
    std::int32_t first = 0;
    std::int32_t last = 0;
  };
  // How many bars have their first or last merged bar in that minute of the day.
  using Minutes = std::array<std::uint32_t, 1440>;

  std::int32_t StartOf(std::int32_t time) const;
  int EndOf(const Part& part) const;
  void Merge(const Bar& bar);

  int interval_;
  bool backwards_;
  std::optional<Bar> open_;
  double volume_ = 0;  // of the open bar
  Part part_;          // the same
  // Of the bars that are finished.
  std::optional<Part> oldest_;
  std::optional<Part> newest_;
  Minutes firsts_{};
  Minutes lasts_{};
};

}  // namespace velumar
