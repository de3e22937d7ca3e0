#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "marketdata/bar.h"

namespace velumar {

// How far apart the bars of one series are, and which intervals they can be stored under.
class BarSpacing {
 public:
  // The next bar in time order, or in the opposite order.
  void Add(const Bar& bar);

  // Seconds between two bars of a day: the most frequent gap, the smallest if several are; 0 if no
  // day has two bars.
  int Seconds() const;
  // kDaily for one bar a day, always at the same time, or at few different ones as in UTC. Minutes
  // if a day has several bars, rounded down. Nothing for a single bar with a time, or for single
  // bars at various times.
  std::optional<int> Interval() const;

  enum class Fit : std::uint8_t {
    kSame,    // the bars have this interval
    kFiner,   // they add up to it
    kUneven,  // they are closer, but do not add up to it: 2 minutes to 5
    kWider    // they are farther apart than a thin market explains
  };
  // `asked`: the user has set the interval, so that a few bars are not enough to contradict.
  Fit FitOf(int interval, bool asked) const;
  // The intervals whose fit is kSame or kFiner, daily last.
  std::vector<int> Candidates() const;

  // As messages describe the bars: "daily", "weekly", "1 minute apart", "4 hours apart".
  std::string Text() const;

 private:
  std::int64_t Gaps() const;
  std::int64_t GapsBelow(int seconds) const;
  int Unit() const;
  bool AreWeeklyOrWider() const;
  std::int64_t TypicalDays() const;
  Fit FitOfDaily() const;
  Fit FitOfWider(int seconds, bool asked) const;

  std::map<int, std::int64_t> gaps_;                        // within days: seconds, how often
  std::map<std::int64_t, std::int64_t> day_gaps_;           // days, how often
  std::pair<const int, std::int64_t>* last_gap_ = nullptr;  // in gaps_
  std::set<std::int32_t> times_;                            // at most kFewTimes + 1
  std::int64_t bars_ = 0;
  Bar last_;
};

}  // namespace velumar
