#pragma once

#include <cstdint>
#include <vector>

#include "marketdata/bar.h"

namespace velumar {

// A place in time: a bar, or some bars after the newest one that there was.
struct TimeAnchor {
  std::int32_t date = 0;  // of the bar
  std::int32_t time = 0;
  // How many stored bars later (earlier if negative), and of which series: its interval, and how
  // many of its bars make a day. Other series of the security count as many days.
  std::int32_t later = 0;
  std::int32_t interval = 0;
  double bars_per_day = 1;

  bool operator==(const TimeAnchor&) const = default;
};

// Where the bars of a chart lie in time. A chart shows the stored bars, or longer ones of which
// each combines several. Places count the bars of the chart. Refers to the bars, which must stay.
class TimeAxis {
 public:
  // `stored` are sorted. `starts` are the first stored bars of those of the chart, empty if the
  // chart shows the stored ones. `interval` is that of the stored bars: minutes, -1 for daily bars,
  // 0 for unknown minutes.
  TimeAxis(const BarArrays& stored, const std::vector<int>& starts, int interval);

  // How many bars the chart has.
  int Bars() const;
  // Of the nearest bar; an anchor without a date if the chart has no bars.
  TimeAnchor At(double place) const;
  // The bar of the chart that holds the anchor. At(PlaceOf(anchor)) is in the same bar, and a place
  // after the newest bar keeps its bar once it is there. 0 if the chart has no bars.
  double PlaceOf(const TimeAnchor& anchor) const;
  // The end of the newest stored bar, in units that only compare; 0 without bars. A daily bar ends
  // with its day.
  std::int64_t Known() const;

 private:
  int Stored() const { return static_cast<int>(stored_.dates.size()); }
  int FirstStored(int bar) const;
  int StoredAt(const TimeAnchor& anchor) const;
  // How many stored bars the newest bars of the chart have, or the newest days, at least 1.
  double BarsPerBar() const;
  double BarsPerDay() const;
  // How many bars of the chart the newest complete day has; 0 or 1 if that is no rhythm to expect
  // the next bars in.
  int BarsOfDay() const;
  // How many stored bars after the first one of the newest bar of the chart the bar that is so many
  // bars later will begin; and the opposite.
  int StoredAhead(int bars) const;
  int BarsAhead(int stored) const;

  const BarArrays& stored_;
  const std::vector<int>& starts_;
  int interval_;
};

}  // namespace velumar
