#include "charthost/indicators/indicator_run.h"

#include <algorithm>
#include <utility>

namespace velumar {
namespace {

constexpr int kCopyEvery = 64;
constexpr std::size_t kMostCopies = 16;

template <typename T>
std::size_t SameValues(const std::vector<T>& one, const std::vector<T>& other, std::size_t limit) {
  const std::size_t count = std::min({one.size(), other.size(), limit});
  const auto end = one.begin() + static_cast<std::ptrdiff_t>(count);
  return static_cast<std::size_t>(std::mismatch(one.begin(), end, other.begin()).first -
                                  one.begin());
}

Bar BarAt(const BarArrays& bars, std::size_t i) {
  const float close = bars.closes[i];
  return {bars.dates[i],
          bars.times[i],
          bars.opens[i],
          std::max(bars.highs[i], close),
          std::min(bars.lows[i], close),
          close,
          bars.volumes[i]};
}

}  // namespace

int SameBars(const BarArrays& one, const BarArrays& other) {
  std::size_t same = SameValues(one.dates, other.dates, one.dates.size());
  same = SameValues(one.times, other.times, same);
  for (const auto field : {&BarArrays::opens, &BarArrays::highs, &BarArrays::lows,
                           &BarArrays::closes, &BarArrays::volumes}) {
    same = SameValues(one.*field, other.*field, same);
  }
  return static_cast<int>(same);
}

IndicatorRun::IndicatorRun(Indicator start, std::size_t lines)
    : start_(std::move(start)), state_(start_), lines_(lines) {}

void IndicatorRun::GoBackTo(int bars) {
  while (!copies_.empty() && copies_.back().bars > bars) copies_.pop_back();
  const int reached = copies_.empty() ? 0 : copies_.back().bars;
  state_ = copies_.empty() ? start_ : copies_.back().state;
  for (std::vector<double>& line : lines_) line.resize(static_cast<std::size_t>(reached));
}

void IndicatorRun::Follow(const BarArrays& bars, int same) {
  if (same < Size()) GoBackTo(same);
  for (std::size_t i = lines_.front().size(); i < bars.dates.size(); ++i) {
    const IndicatorLines values = state_(BarAt(bars, i));
    for (std::size_t line = 0; line < lines_.size(); ++line) lines_[line].push_back(values[line]);
    const int taken = static_cast<int>(i) + 1;
    if (taken % kCopyEvery != 0) continue;
    copies_.push_back({taken, state_});
    if (copies_.size() > kMostCopies) copies_.pop_front();
  }
}

}  // namespace velumar
