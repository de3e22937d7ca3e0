#include "resultchart/thinning.h"

#include <algorithm>
#include <cmath>

namespace velumar {

namespace {

struct Indices {
  std::size_t begin;
  std::size_t end;
};

// The points within the span and `beside` more at each end.
Indices Within(std::size_t count, const AxisSpan& span, double beside) {
  const double most = static_cast<double>(count);
  const double begin = std::clamp(std::ceil(span.first - beside), 0.0, most);
  const double end = std::clamp(std::floor(span.last + beside) + 1, begin, most);
  return {static_cast<std::size_t>(begin), static_cast<std::size_t>(end)};
}

// Calls `group(begin, end)` for the points of each column.
template <typename Group>
void ForEachColumn(const Indices& indices, const AxisSpan& span, int columns, const Group& group) {
  const double per_point = columns / span.Size();
  const auto column = [&](std::size_t i) {
    return std::floor((static_cast<double>(i) - span.first) * per_point);
  };
  for (std::size_t begin = indices.begin; begin < indices.end;) {
    std::size_t end = begin + 1;
    while (end < indices.end && column(end) == column(begin)) ++end;
    group(begin, end);
    begin = end;
  }
}

void AddColumn(std::vector<LinePoint>& line, std::span<const double> values, std::size_t begin,
               std::size_t end) {
  const auto part = values.subspan(begin, end - begin);
  const auto [lowest, highest] = std::ranges::minmax_element(part);
  std::vector<std::size_t> kept = {begin, begin + static_cast<std::size_t>(lowest - part.begin()),
                                   begin + static_cast<std::size_t>(highest - part.begin()),
                                   end - 1};
  std::ranges::sort(kept);
  kept.erase(std::unique(kept.begin(), kept.end()), kept.end());
  for (const std::size_t i : kept) line.push_back({static_cast<double>(i), values[i]});
}

LinePoint Between(const LinePoint& a, const LinePoint& b, double place) {
  return {place, a.value + (b.value - a.value) * (place - a.place) / (b.place - a.place)};
}

void CutAtEnds(std::vector<LinePoint>& line, const AxisSpan& span) {
  if (line.size() < 2) return;
  if (line[0].place < span.first) line[0] = Between(line[0], line[1], span.first);
  LinePoint& end = line.back();
  if (end.place > span.last) end = Between(line[line.size() - 2], end, span.last);
}

}  // namespace

std::vector<LinePoint> ThinnedLine(std::span<const double> values, const AxisSpan& span,
                                   int columns) {
  std::vector<LinePoint> line;
  ForEachColumn(Within(values.size(), span, 1), span, std::max(columns, 1),
                [&](std::size_t begin, std::size_t end) { AddColumn(line, values, begin, end); });
  CutAtEnds(line, span);
  return line;
}

std::vector<Slot> ThinnedSlots(std::span<const double> values, const AxisSpan& span, int columns,
                               double base) {
  constexpr double kHalf = 0.5;
  std::vector<Slot> taken;
  const auto add = [&](std::size_t begin, std::size_t end) {
    const auto part = values.subspan(begin, end - begin);
    const double farthest = *std::ranges::max_element(
        part, {}, [base](double value) { return std::abs(value - base); });
    taken.push_back({std::max(static_cast<double>(begin) - kHalf, span.first),
                     std::min(static_cast<double>(end) - kHalf, span.last), farthest});
  };
  ForEachColumn(Within(values.size(), span, kHalf), span, std::max(columns, 1), add);
  std::erase_if(taken, [](const Slot& slot) { return slot.right <= slot.left; });
  return taken;
}

ValueSpan FittingValues(std::span<const double> values, const AxisSpan& span, bool on_base) {
  constexpr double kRoom = 0.06;
  constexpr double kCloseTogether = 5.0 / 6;
  const Indices shown = Within(values.size(), span, 1);
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
    const double around = lower == 0 ? 1 : std::abs(lower) * kRoom;
    return {lower - around, upper + around};
  }
  const double room = (upper - lower) * kRoom;
  if (!from_zero || lower < 0) lower -= room;
  if (!from_zero || upper > 0) upper += room;
  return {lower, upper};
}

}  // namespace velumar
