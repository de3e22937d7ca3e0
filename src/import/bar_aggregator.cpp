#include "import/bar_aggregator.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "base/dates.h"
#include "marketdata/interval.h"

namespace velumar {

namespace {

// One day in ten: often enough to be a rule, as on Fridays, and more often than half holidays.
constexpr std::uint32_t kOftenEnough = 10;
constexpr int kDayMinutes = 1440;

std::uint32_t Sum(const std::array<std::uint32_t, kDayMinutes>& minutes, int from, int to) {
  return std::accumulate(minutes.begin() + from, minutes.begin() + to, std::uint32_t{0});
}

// True if bars that are as short are so often that a bar is as complete as others. Both numbers
// include the bar itself.
bool IsUsual(std::uint32_t as_short, std::uint32_t all) {
  return all > 1 && (as_short - 1) * kOftenEnough >= all - 1;
}

}  // namespace

std::int32_t BarAggregator::StartOf(std::int32_t time) const {
  if (interval_ == kDaily) return 0;
  const int minute = time / 100 % 100;
  return time / 10000 * 10000 + minute / interval_ * interval_ * 100;
}

// In minutes of the day.
int BarAggregator::EndOf(const Part& part) const {
  return interval_ == kDaily ? kDayMinutes : MinuteOfDay(part.start) + interval_;
}

std::optional<Bar> BarAggregator::Add(const Bar& bar) {
  const std::int32_t start = StartOf(bar.time);
  if (open_ && open_->date == bar.date && open_->time == start) {
    Merge(bar);
    return std::nullopt;
  }
  std::optional<Bar> finished = Finish();
  open_ = bar;
  open_->time = start;
  volume_ = bar.volume;
  part_ = {.start = start, .first = bar.time, .last = bar.time};
  return finished;
}

void BarAggregator::Merge(const Bar& bar) {
  open_->high = std::max(open_->high, bar.high);
  open_->low = std::min(open_->low, bar.low);
  volume_ += bar.volume;
  if (backwards_) {
    open_->open = bar.open;
    part_.first = bar.time;
    return;
  }
  open_->close = bar.close;
  open_->open_interest = bar.open_interest;
  part_.last = bar.time;
}

std::optional<Bar> BarAggregator::Finish() {
  if (!open_) return std::nullopt;
  open_->volume = static_cast<float>(volume_);
  ++firsts_.at(static_cast<std::size_t>(MinuteOfDay(part_.first)));
  ++lasts_.at(static_cast<std::size_t>(MinuteOfDay(part_.last)));
  if (!backwards_ || !newest_) newest_ = part_;
  if (backwards_ || !oldest_) oldest_ = part_;
  return std::exchange(open_, std::nullopt);
}

bool BarAggregator::NewestIsComplete(int spacing) const {
  if (!newest_) return true;
  const int last = MinuteOfDay(newest_->last);
  if (last * 60 + newest_->last % 100 + spacing >= EndOf(*newest_) * 60) return true;
  const int start = MinuteOfDay(newest_->start);
  return IsUsual(Sum(lasts_, start, last + 1), Sum(lasts_, start, EndOf(*newest_)));
}

bool BarAggregator::OldestIsComplete(int spacing) const {
  if (!oldest_) return true;
  const int first = MinuteOfDay(oldest_->first);
  const int start = MinuteOfDay(oldest_->start);
  if (first * 60 + oldest_->first % 100 - spacing < start * 60) return true;
  const int end = EndOf(*oldest_);
  return IsUsual(Sum(firsts_, first, end), Sum(firsts_, start, end));
}

}  // namespace velumar
