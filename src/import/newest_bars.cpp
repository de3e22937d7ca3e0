#include "import/newest_bars.h"

#include <algorithm>

#include "marketdata/interval.h"

namespace velumar {

namespace {

constexpr std::size_t kMostKept = kLongestSeries + 1;  // the newest may be left out

}  // namespace

void NewestBars::Add(const Bar& bar, bool backwards) {
  ++count_;
  if (bars_.size() < kMostKept) {
    bars_.push_back(bar);
  } else if (!backwards) {
    bars_[oldest_] = bar;
    oldest_ = (oldest_ + 1) % kMostKept;
  }
}

std::vector<Bar> NewestBars::Take(bool backwards, bool without_newest) {
  if (backwards) std::ranges::reverse(bars_);
  std::rotate(bars_.begin(), bars_.begin() + static_cast<std::ptrdiff_t>(oldest_), bars_.end());
  if (without_newest) bars_.pop_back();
  if (bars_.size() > kLongestSeries) bars_.erase(bars_.begin());
  return std::move(bars_);
}

}  // namespace velumar
