#include "charthost/value_ticks.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>

namespace velumar {
namespace {

double RoundStep(double least) {
  const double power = std::pow(10, std::floor(std::log10(least)));
  for (const double factor : {1.0, 2.0, 5.0}) {
    if (factor * power >= least * 0.999) return factor * power;
  }
  return 10 * power;
}

std::vector<double> LinearTicks(double lower, double upper, int wanted) {
  const double step = RoundStep((upper - lower) / wanted);
  std::vector<double> ticks;
  const double first = std::ceil(lower / step);
  const auto count = static_cast<int>(std::floor(upper / step) - first) + 1;
  ticks.reserve(static_cast<std::size_t>(std::max(0, count)));
  for (int n = 0; n < count; ++n) ticks.push_back((first + n) * step);
  return ticks;
}

std::vector<double> DecadeTicks(double lower, double upper, std::span<const double> factors) {
  std::vector<double> ticks;
  const auto last = static_cast<int>(std::floor(std::log10(upper)));
  for (auto decade = static_cast<int>(std::floor(std::log10(lower))); decade <= last; ++decade) {
    for (const double factor : factors) {
      const double tick = factor * std::pow(10, decade);
      if (tick >= lower && tick <= upper) ticks.push_back(tick);
    }
  }
  return ticks;
}

}  // namespace

std::vector<double> ValueTicks(double lower, double upper, int wanted, bool logarithmic) {
  if (!(upper > lower)) return {};
  const int count = std::max(1, wanted);
  if (!logarithmic || lower <= 0 || upper / lower < 4) return LinearTicks(lower, upper, count);
  static constexpr std::array kFine = {1.0, 1.5, 2.0, 3.0, 4.0, 5.0, 7.0};
  static constexpr std::array kUsual = {1.0, 2.0, 5.0};
  static constexpr std::array kDecades = {1.0};
  for (const std::span<const double> factors : {std::span<const double>(kFine), {kUsual}}) {
    std::vector<double> ticks = DecadeTicks(lower, upper, factors);
    if (static_cast<int>(ticks.size()) <= count) return ticks;
  }
  return DecadeTicks(lower, upper, kDecades);
}

}  // namespace velumar
