#pragma once

#include <optional>
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

  // Set by FrameBars, if each bar combines several stored ones: the first of these.
  std::vector<int> starts;
  int stored_bars = 0;
  bool newest_unfinished = false;  // more stored bars may join the newest bar

  int size() const { return static_cast<int>(dates.size()); }
};

// Fills in the fields below the arrays. The decimals are found from a sample of the bars.
void DescribeSeries(BarSeries& series);

// Keeps the first `count` bars.
void TruncateBars(BarSeries& bars, std::size_t count);

// The bar that holds this stored bar; nothing if the series does not reach it.
std::optional<int> BarOfStored(const BarSeries& series, int stored);

// The date of a bar, and its time if the series has times.
struct BarMoment {
  std::int32_t date = 0;
  std::optional<std::int32_t> time;

  bool operator==(const BarMoment&) const = default;
};

BarMoment MomentOf(const BarSeries& series, int bar);

// The bar of any series at that moment: the one whose dates and times include it, or the last one
// before it. A date without a time is the first bar of that day. Nothing before the first bar.
std::optional<int> BarAtMoment(const BarSeries& series, const BarMoment& moment);

}  // namespace velumar
