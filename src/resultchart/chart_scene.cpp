#include "resultchart/chart_scene.h"

#include <algorithm>
#include <cmath>

namespace velumar {
namespace {

struct Indices {
  std::size_t begin;
  std::size_t end;
};

// The points within the span and one more at each end.
Indices Within(std::size_t count, const AxisSpan& span) {
  const auto most = static_cast<double>(count);
  const double begin = std::clamp(std::ceil(span.first - 1), 0.0, most);
  const double end = std::clamp(std::floor(span.last + 1) + 1, begin, most);
  return {static_cast<std::size_t>(begin), static_cast<std::size_t>(end)};
}

}  // namespace

std::optional<ChartType> ChartTypeOf(std::string_view text) {
  const auto found = std::ranges::find(kChartTypes, text, &ChartTypeName::text);
  return found == kChartTypes.end() ? std::nullopt : std::optional(found->type);
}

std::vector<ThinnedBar> ThinnedBars(std::span<const double> values, const AxisSpan& span,
                                    int points_per_bar) {
  const auto size = static_cast<std::size_t>(points_per_bar);
  const Indices shown = Within(values.size(), span);
  std::vector<ThinnedBar> bars;
  for (std::size_t begin = shown.begin / size * size; begin < shown.end; begin += size) {
    const auto part = values.subspan(begin, std::min(size, values.size() - begin));
    const double farthest =
        *std::ranges::max_element(part, {}, [](double value) { return std::abs(value); });
    bars.push_back({static_cast<double>(begin) + (points_per_bar - 1) / 2.0, farthest});
  }
  return bars;
}

ValueSpan FittingValues(std::span<const double> values, const AxisSpan& span, bool on_base) {
  constexpr double kMargin = 0.06;
  constexpr double kCloseTogether = 5.0 / 6;
  const Indices shown = Within(values.size(), span);
  if (shown.begin == shown.end) return {0, 1};
  const auto part = values.subspan(shown.begin, shown.end - shown.begin);
  const auto [lowest, highest] = std::ranges::minmax(part);
  const bool one_side = lowest > 0 || highest < 0;
  const double near = std::min(std::abs(lowest), std::abs(highest));
  const double far = std::max(std::abs(lowest), std::abs(highest));
  const bool from_zero = on_base && (!one_side || near < far * kCloseTogether);
  double lower = from_zero ? std::min(lowest, 0.0) : lowest;
  double upper = from_zero ? std::max(highest, 0.0) : highest;
  if (upper == lower) {
    const double around = lower == 0 ? 1 : std::abs(lower) * kMargin;
    return {lower - around, upper + around};
  }
  const double margin = (upper - lower) * kMargin;
  if (!from_zero || lower < 0) lower -= margin;
  if (!from_zero || upper > 0) upper += margin;
  return {lower, upper};
}

}  // namespace velumar
