#include "charthost/drawings/time_axis.h"

#include <algorithm>
#include <cmath>

#include "base/dates.h"

namespace velumar {
namespace {

// The newest bars of a chart, or days, that an average is taken of.
constexpr int kSample = 20;
// Against rounding, in parts of a bar.
constexpr double kTiny = 1e-6;

}  // namespace

TimeAxis::TimeAxis(const BarArrays& stored, const std::vector<int>& starts, int interval)
    : stored_(stored), starts_(starts), interval_(interval) {}

int TimeAxis::Bars() const { return starts_.empty() ? Stored() : static_cast<int>(starts_.size()); }

int TimeAxis::FirstStored(int bar) const {
  return starts_.empty() ? bar : starts_[static_cast<std::size_t>(bar)];
}

double TimeAxis::BarsPerBar() const {
  const int last = Bars() - 1;
  const int sample = std::min(last, kSample);
  if (starts_.empty() || sample == 0) return std::max(1.0, starts_.empty() ? 1.0 : Stored());
  return std::max(1.0, double(FirstStored(last) - FirstStored(last - sample)) / sample);
}

// The day of the newest bar may be unfinished, so it doesn't count if there is another.
double TimeAxis::BarsPerDay() const {
  const auto& dates = stored_.dates;
  const auto begin_of = [&dates](std::int32_t date) {
    return std::ranges::lower_bound(dates, date) - dates.begin();
  };
  const auto newest = begin_of(dates.back());
  auto first = newest;
  int days = 0;
  for (; days < kSample && first > 0; ++days) {
    first = begin_of(dates[static_cast<std::size_t>(first) - 1]);
  }
  return days == 0 ? Stored() : std::max(1.0, double(newest - first) / days);
}

int TimeAxis::BarsOfDay() const {
  if (starts_.empty()) return 0;
  const auto begin_of_day = [this](int bar) {
    const auto date_of = [this](int of) {
      return stored_.dates[static_cast<std::size_t>(FirstStored(of))];
    };
    int first = bar;
    while (first > 0 && date_of(first - 1) == date_of(bar)) --first;
    return first;
  };
  const int newest = begin_of_day(Bars() - 1);
  return newest == 0 ? 0 : newest - begin_of_day(newest - 1);
}

// The bars of a day may hold unequal numbers of stored ones: an hour may begin with a break. The
// next bars are expected to hold as many as those at the same time of the day before.
int TimeAxis::StoredAhead(int bars) const {
  const int day = BarsOfDay();
  if (day <= 1) return static_cast<int>(std::ceil(bars * BarsPerBar() - kTiny));
  const int last = Bars() - 1;
  const int of_day = FirstStored(last) - FirstStored(last - day);
  return bars / day * of_day + FirstStored(last - day + bars % day) - FirstStored(last - day);
}

int TimeAxis::BarsAhead(int stored) const {
  const int day = BarsOfDay();
  if (day <= 1) return static_cast<int>(std::floor(stored / BarsPerBar() + kTiny));
  const int last = Bars() - 1;
  const int of_day = FirstStored(last) - FirstStored(last - day);
  const int wanted = FirstStored(last - day) + stored % of_day;
  const auto after = std::ranges::upper_bound(starts_, wanted);
  return stored / of_day * day + static_cast<int>(after - starts_.begin()) - 1 - (last - day);
}

TimeAnchor TimeAxis::At(double place) const {
  if (Bars() == 0) return {};
  const int last = Bars() - 1;
  const auto bar = static_cast<int>(std::lround(std::clamp(place, -1e6, last + 1e6)));
  TimeAnchor anchor;
  int stored = 0;
  if (bar > last) {
    const int wanted = FirstStored(last) + StoredAhead(bar - last);
    stored = Stored() - 1;
    anchor.later = std::max(1, wanted - stored);
  } else if (bar < 0) {
    anchor.later = static_cast<int>(std::floor(bar * BarsPerBar() + kTiny));
  } else {
    stored = FirstStored(bar);
  }
  anchor.date = stored_.dates[static_cast<std::size_t>(stored)];
  anchor.time = stored_.times[static_cast<std::size_t>(stored)];
  if (anchor.later != 0) {
    anchor.interval = interval_;
    anchor.bars_per_day = BarsPerDay();
  }
  return anchor;
}

// A moment within a bar belongs to it. One at midnight is a whole day, and begins with its first
// bar. The result may lie before the first or after the newest bar.
int TimeAxis::StoredAt(const TimeAnchor& anchor) const {
  const BarKey wanted = TimestampKey(anchor.date, anchor.time);
  int first = 0;
  int after = Stored();
  while (first < after) {
    const int middle = first + (after - first) / 2;
    const auto i = static_cast<std::size_t>(middle);
    if (TimestampKey(stored_.dates[i], stored_.times[i]) < wanted) {
      first = middle + 1;
    } else {
      after = middle;
    }
  }
  const auto i = static_cast<std::size_t>(first);
  const bool begins = first < Stored() && stored_.dates[i] == anchor.date &&
                      (stored_.times[i] == anchor.time || anchor.time == 0);
  const int bar = begins ? first : first - 1;
  if (anchor.later == 0) return bar;
  if (anchor.interval == interval_) return bar + anchor.later;
  const double days = anchor.later / anchor.bars_per_day;
  return bar + static_cast<int>(std::lround(std::clamp(days * BarsPerDay(), -1e6, 1e6)));
}

double TimeAxis::PlaceOf(const TimeAnchor& anchor) const {
  if (Bars() == 0) return 0;
  const int stored = StoredAt(anchor);
  const int last = Bars() - 1;
  if (stored >= FirstStored(last)) {
    if (stored < Stored()) return last;
    return last + BarsAhead(stored - FirstStored(last));
  }
  if (stored < 0) return std::ceil(stored / BarsPerBar() - kTiny);
  if (starts_.empty()) return stored;
  const auto after = std::ranges::upper_bound(starts_, stored);
  return static_cast<double>(after - starts_.begin()) - 1;
}

std::int64_t TimeAxis::Known() const {
  if (Stored() == 0) return 0;
  constexpr std::int64_t kMinutesOfDay = 1440;
  const std::int64_t day = stored_.dates.back() * kMinutesOfDay;
  if (interval_ < 0) return day + kMinutesOfDay;
  const std::int64_t end = MinuteOfDay(stored_.times.back()) + interval_;
  return day + std::clamp<std::int64_t>(end, 0, kMinutesOfDay);
}

}  // namespace velumar
