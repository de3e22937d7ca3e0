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

}  // namespace

std::int32_t BarAggregator::StartOf(std::int32_t time) const {
  if (interval_ == kDaily) return 0;
  const int minute = time / 100 % 100;
  return time / 10000 * 10000 + minute / interval_ * interval_ * 100;
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
  ended_ = bar.time;
  return finished;
}

void BarAggregator::Merge(const Bar& bar) {
  open_->high = std::max(open_->high, bar.high);
  open_->low = std::min(open_->low, bar.low);
  volume_ += bar.volume;
  if (backwards_) {
    open_->open = bar.open;
    return;
  }
  open_->close = bar.close;
  open_->open_interest = bar.open_interest;
  ended_ = bar.time;
}

std::optional<Bar> BarAggregator::Finish() {
  if (!open_) return std::nullopt;
  open_->volume = static_cast<float>(volume_);
  ++ends_.at(static_cast<std::size_t>(MinuteOfDay(ended_)));
  if (!backwards_ || !newest_ended_) {
    newest_start_ = open_->time;
    newest_ended_ = ended_;
  }
  return std::exchange(open_, std::nullopt);
}

bool BarAggregator::NewestIsComplete(int spacing) const {
  if (!newest_ended_) return true;
  const int start = MinuteOfDay(newest_start_);
  const int end = interval_ == kDaily ? static_cast<int>(ends_.size()) : start + interval_;
  const int last = MinuteOfDay(*newest_ended_);
  if (last * 60 + *newest_ended_ % 100 + spacing >= end * 60) return true;
  const auto sum = [this](int from, int to) {
    return std::accumulate(ends_.begin() + from, ends_.begin() + to, std::uint32_t{0});
  };
  const std::uint32_t all = sum(start, end) - 1;
  const std::uint32_t as_early = sum(start, last + 1) - 1;
  return all > 0 && as_early * kOftenEnough >= all;
}

}  // namespace velumar
