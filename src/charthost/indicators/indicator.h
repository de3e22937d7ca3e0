#pragma once

#include <array>
#include <functional>
#include <limits>

#include "marketdata/bar.h"

namespace velumar {

inline constexpr double kNoValue = std::numeric_limits<double>::quiet_NaN();

// One value for each line of an indicator at a bar. kNoValue where there is none: while the
// indicator has too few bars, and in the places that it doesn't use.
using IndicatorLines = std::array<double, 3>;

constexpr IndicatorLines Lines(double first, double second = kNoValue, double third = kNoValue) {
  return {first, second, third};
}

// Takes the bars one at a time, oldest first, and returns the lines at each. A copy continues from
// the same bar, so whoever wants to take bars back keeps copies. High and low must enclose the
// close. Every class of this folder with such a call operator is one.
using Indicator = std::function<IndicatorLines(const Bar&)>;

}  // namespace velumar
