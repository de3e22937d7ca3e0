#include "charthost/bar_series.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace velumar {
namespace {

constexpr int kSampledBars = 400;

template <typename T>
bool HoldsAny(const std::vector<T>& values) {
  return std::any_of(values.begin(), values.end(), [](T value) { return value != T{}; });
}

template <typename T>
void Truncate(std::vector<T>& values, std::size_t count) {
  if (values.size() > count) values.resize(count);
}

// Decimals of the shortest text that reads back as the same float: 2 for 55.51, 0 for 3600.
int DecimalsOf(float value) {
  std::array<char, 64> digits;
  const auto end = std::to_chars(digits.begin(), digits.end(), value, std::chars_format::fixed).ptr;
  const auto point = std::find(digits.begin(), end, '.');
  return point == end ? 0 : static_cast<int>(end - point) - 1;
}

// As many decimals as the quotes have, but no more than a 32-bit float can hold at that price.
int QuotedDecimals(const BarSeries& series) {
  const int step = std::max(1, series.size() / kSampledBars);
  int decimals = 0;
  float highest = 0;
  for (int i = 0; i < series.size(); i += step) {
    decimals = std::max({decimals, DecimalsOf(series.highs[i]), DecimalsOf(series.lows[i]),
                         DecimalsOf(series.closes[i])});
    highest = std::max(highest, std::abs(series.highs[i]));
  }
  const int whole_digits = highest >= 10 ? static_cast<int>(std::log10(highest)) + 1 : 1;
  return std::clamp(std::min(decimals, 6 - whole_digits), 2, 5);
}

}  // namespace

void DescribeSeries(BarSeries& series) {
  series.has_opens = HoldsAny(series.opens);
  series.has_volumes = HoldsAny(series.volumes);
  series.has_times = HoldsAny(series.times);
  series.decimals = QuotedDecimals(series);
}

void TruncateBars(BarSeries& bars, std::size_t count) {
  Truncate(bars.dates, count);
  Truncate(bars.times, count);
  for (const auto field : {&BarArrays::opens, &BarArrays::highs, &BarArrays::lows,
                           &BarArrays::closes, &BarArrays::volumes}) {
    Truncate(bars.*field, count);
  }
}

std::optional<int> BarOfStored(const BarSeries& series, int stored) {
  const int count = series.starts.empty() ? series.size() : series.stored_bars;
  if (stored < 0 || stored >= count) return std::nullopt;
  if (series.starts.empty()) return stored;
  const auto after = std::ranges::upper_bound(series.starts, stored);
  return static_cast<int>(after - series.starts.begin()) - 1;
}

BarMoment MomentOf(const BarSeries& series, int bar) {
  BarMoment moment = {series.dates[bar], std::nullopt};
  if (series.has_times) moment.time = series.times[bar];
  return moment;
}

std::optional<int> BarAtMoment(const BarSeries& series, const BarMoment& moment) {
  const auto first = series.dates.begin();
  const auto [from, to] = std::equal_range(first, series.dates.end(), moment.date);
  auto after = to - first;
  if (series.has_times) {
    const auto times = series.times.begin() + (from - first);
    if (!moment.time && from != to) return static_cast<int>(from - first);
    after = std::upper_bound(times, times + (to - from), moment.time.value_or(0)) -
            series.times.begin();
  }
  return after > 0 ? std::optional(static_cast<int>(after) - 1) : std::nullopt;
}

}  // namespace velumar
