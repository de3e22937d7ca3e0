#pragma once

#include <span>
#include <vector>

namespace velumar {

// A range of an axis that counts points: point i lies at i.
struct AxisSpan {
  double first;
  double last;

  double Size() const { return last - first; }
  bool operator==(const AxisSpan&) const = default;
};

struct ThinnedBar {
  double place;  // of its middle
  double value;

  bool operator==(const ThinnedBar&) const = default;
};

// One bar for every `points_per_bar` values within the span: the value that is farthest from zero.
// Bars begin at multiples of that number, so scrolling doesn't change them.
std::vector<ThinnedBar> ThinnedBars(std::span<const double> values, const AxisSpan& span,
                                    int points_per_bar);

struct ValueSpan {
  double lower;
  double upper;

  bool operator==(const ValueSpan&) const = default;
};

// The range of the value axis for the points within the span, with a margin. Values on a base line
// start at zero unless they are so close together that no difference would be visible.
ValueSpan FittingValues(std::span<const double> values, const AxisSpan& span, bool on_base);

}  // namespace velumar
