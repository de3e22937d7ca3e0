#include "import/bar_spacing.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <numeric>
#include <utility>

#include "base/dates.h"
#include "import/wording.h"
#include "marketdata/interval.h"

namespace velumar {

namespace {

constexpr std::size_t kFewTimes = 3;
constexpr int kManyBars = 10;
constexpr int kLargeSample = 20;    // gaps
constexpr int kEnoughToDoubt = 6;   // gaps, if only a file name names the interval
constexpr int kWidestDailyGap = 4;  // days: a weekend with a holiday

int SecondOfDay(std::int32_t time) { return MinuteOfDay(time) * 60 + time % 100; }

template <typename Map>
std::int64_t Sum(const Map& counts) {
  return std::accumulate(counts.begin(), counts.end(), std::int64_t{0},
                         [](std::int64_t sum, const auto& one) { return sum + one.second; });
}

}  // namespace

void BarSpacing::Add(const Bar& bar) {
  if (times_.size() <= kFewTimes) times_.insert(bar.time);
  const Bar before = std::exchange(last_, bar);
  if (bars_++ == 0) return;
  if (bar.date != before.date) {
    ++day_gaps_[std::abs(DayNumber(bar.date) - DayNumber(before.date))];
    return;
  }
  const int seconds = std::abs(SecondOfDay(bar.time) - SecondOfDay(before.time));
  if (last_gap_ == nullptr || last_gap_->first != seconds) {
    last_gap_ = &*gaps_.try_emplace(seconds, 0).first;
  }
  ++last_gap_->second;
}

int BarSpacing::Seconds() const {
  if (gaps_.empty()) return 0;
  return std::ranges::max_element(gaps_, {}, [](const auto& gap) { return gap.second; })->first;
}

std::optional<int> BarSpacing::Interval() const {
  if (!gaps_.empty()) return Seconds() / 60;
  const bool same_time = times_.size() == 1 && (bars_ > 1 || *times_.begin() == 0);
  const bool few_times = times_.size() <= kFewTimes && bars_ >= kManyBars;
  return same_time || few_times ? std::optional(kDaily) : std::nullopt;
}

std::int64_t BarSpacing::Gaps() const { return Sum(gaps_); }

std::int64_t BarSpacing::GapsBelow(int seconds) const {
  std::int64_t below = 0;
  for (auto gap = gaps_.begin(); gap != gaps_.lower_bound(seconds); ++gap) below += gap->second;
  return below;
}

// What all gaps but a few are multiples of.
int BarSpacing::Unit() const {
  int unit = 0;
  const std::int64_t all = Gaps();
  for (const auto& [seconds, count] : gaps_) {
    if (count * 100 >= all) unit = std::gcd(unit, seconds);
  }
  return unit;
}

std::int64_t BarSpacing::TypicalDays() const {
  if (day_gaps_.empty()) return 1;
  return std::ranges::max_element(day_gaps_, {}, [](const auto& gap) { return gap.second; })->first;
}

bool BarSpacing::AreWeeklyOrWider() const {
  const std::int64_t all = Sum(day_gaps_);
  std::int64_t wide = 0;
  for (const auto& [days, count] : day_gaps_) wide += days > kWidestDailyGap ? count : 0;
  return all >= 3 ? wide * 5 >= all * 4 : all == 2 && day_gaps_.size() == 1 && wide == 2;
}

BarSpacing::Fit BarSpacing::FitOfDaily() const {
  if (!gaps_.empty()) return Fit::kFiner;
  return AreWeeklyOrWider() ? Fit::kWider : Fit::kSame;
}

// In a thin market most bars are missing, but some follow one another, and all gaps are multiples
// of the interval.
BarSpacing::Fit BarSpacing::FitOfWider(int seconds, bool asked) const {
  const std::int64_t all = Gaps();
  std::int64_t same = 0;
  for (const auto& [gap, count] : gaps_) {
    const int rounded = gap / 60 * 60;
    if (rounded % seconds != 0 && count * 20 >= all) return Fit::kWider;
    if (rounded == seconds) same += count;
  }
  if (all >= 3 && gaps_.size() == 1) return Fit::kWider;
  if (all >= (asked ? kLargeSample : kEnoughToDoubt) && same * 20 < all) return Fit::kWider;
  return Fit::kSame;
}

BarSpacing::Fit BarSpacing::FitOf(int interval, bool asked) const {
  if (interval == kDaily) return FitOfDaily();
  if (gaps_.empty()) return Interval() == kDaily && bars_ > 2 ? Fit::kWider : Fit::kSame;
  const int wanted = interval * 60;
  const int seconds = Seconds() / 60 * 60;
  if (seconds > wanted) return FitOfWider(wanted, asked);
  // The first bar of a session may be shorter, and the last one.
  const std::int64_t days = Sum(day_gaps_) + 1;
  if (seconds == wanted && GapsBelow(wanted) <= std::max(2 * days, Gaps() / 100)) return Fit::kSame;
  return wanted % Unit() == 0 ? Fit::kFiner : Fit::kUneven;
}

std::vector<int> BarSpacing::Candidates() const {
  std::vector<int> candidates;
  std::ranges::copy_if(kReplayIntervals, std::back_inserter(candidates), [this](int interval) {
    const Fit fit = FitOf(interval, false);
    return fit == Fit::kSame || fit == Fit::kFiner;
  });
  if (!candidates.empty() && candidates.front() == kDaily) {
    std::rotate(candidates.begin(), candidates.begin() + 1, candidates.end());
  }
  return candidates;
}

std::string BarSpacing::Text() const {
  if (!gaps_.empty()) return DurationText(Seconds()) + " apart";
  if (!AreWeeklyOrWider()) return "daily";
  const std::int64_t days = TypicalDays();
  if (days <= 9) return "weekly";
  if (days >= 28 && days <= 31) return "monthly";
  return Counted(days, "day") + " apart";
}

}  // namespace velumar
