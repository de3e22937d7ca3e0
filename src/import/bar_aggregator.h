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

 private:
  std::int32_t StartOf(std::int32_t time) const;
  void Merge(const Bar& bar);

  int interval_;
  bool backwards_;
  std::optional<Bar> open_;
  double volume_ = 0;       // of the open bar
  std::int32_t ended_ = 0;  // the time of the last bar that was merged into it
  // Of the newest bar that is finished.
  std::int32_t newest_start_ = 0;
  std::optional<std::int32_t> newest_ended_;
  // How many bars ended with a merged bar of that minute of the day.
  std::array<std::uint32_t, 1440> ends_{};
};

}  // namespace velumar
