#pragma once

#include <span>
#include <vector>

namespace velumar {

// The stretch of an axis that counts points: point i lies at i, `first` and `last` are its ends.
struct AxisSpan {
  double first;
  double last;

  double Size() const { return last - first; }
  bool operator==(const AxisSpan&) const = default;
};

struct LinePoint {
  double place;
  double value;

  bool operator==(const LinePoint&) const = default;
};

// The line through all points within the span, cut exactly at its ends. Where several points share
// one of `columns`, only the first, lowest, highest and last of them stay: the picture is the same.
std::vector<LinePoint> ThinnedLine(std::span<const double> values, const AxisSpan& span,
                                   int columns);

// What one bar or step stands for: from `left` to `right`, cut at the ends of the span.
struct Slot {
  double left;
  double right;
  double value;

  bool operator==(const Slot&) const = default;
};

// One slot for each point, or for each column where several points share it; of these the one that
// is farthest from `base` stays.
std::vector<Slot> ThinnedSlots(std::span<const double> values, const AxisSpan& span, int columns,
                               double base);

struct ValueSpan {
  double lower;
  double upper;

  bool operator==(const ValueSpan&) const = default;
};

// The values to show for the points within the span, with room above and below. Values on a base
// line start at zero, unless they are so close together that nothing of them would be seen.
ValueSpan FittingValues(std::span<const double> values, const AxisSpan& span, bool on_base);

}  // namespace velumar
