#include "progress/bootstrap.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace velumar {

namespace {

constexpr double kTail = 0.025;
constexpr double kNormalQuantile = 1.959963984540054;  // of 0.975

double NormalShare(double quantile) { return std::erfc(-quantile / std::sqrt(2.0)) / 2; }

// The 0.975 quantile of Student's t from four degrees of freedom on, within 0.5 %: Abramowitz &
// Stegun 1964, 26.7.5.
double StudentQuantile(double degrees) {
  const double z = kNormalQuantile;
  const double z2 = z * z;
  return z * (1 + (z2 + 1) / (4 * degrees) + ((5 * z2 + 16) * z2 + 3) / (96 * degrees * degrees) +
              (((3 * z2 + 19) * z2 + 17) * z2 - 15) / (384 * degrees * degrees * degrees));
}

// Between the two values next to it; may move the values.
double QuantileOf(std::vector<double>& values, double share) {
  const double place = std::clamp(share * (static_cast<double>(values.size()) + 1) - 1, 0.0,
                                  static_cast<double>(values.size() - 1));
  const auto at = values.begin() + static_cast<std::ptrdiff_t>(place);
  std::ranges::nth_element(values, at);
  const double part = place - std::floor(place);
  if (part == 0 || at + 1 == values.end()) return *at;
  const double next = *std::min_element(at + 1, values.end());
  return *at == next ? next : *at + part * (next - *at);  // also if both are infinite
}

// Drops what is NaN. Returns false if that was more than half.
bool DropUndefined(std::vector<double>& values) {
  const std::size_t dropped = std::erase_if(values, [](double value) { return std::isnan(value); });
  return !values.empty() && dropped <= values.size();
}

}  // namespace

std::vector<std::vector<double>> Resample(std::size_t units, std::size_t statistics,
                                          const RoundOptions& options,
                                          const ResampledStatistics& compute) {
  const auto rounds = static_cast<std::size_t>(options.count);
  std::vector<std::vector<double>> values(statistics, std::vector<double>(rounds));
  RunRounds(options, [&](int first, int end, RandomSource& random) {
    std::vector<std::uint32_t> drawn(units);
    std::vector<double> round(statistics);
    for (auto i = static_cast<std::size_t>(first); i < static_cast<std::size_t>(end); ++i) {
      for (std::uint32_t& unit : drawn) unit = random.Below(static_cast<std::uint32_t>(units));
      compute(drawn, round);
      for (std::size_t k = 0; k < statistics; ++k) values[k][i] = round[k];
    }
  });
  return values;
}

std::optional<Interval> ExpandedPercentile(std::vector<double> values, std::size_t units) {
  if (!DropUndefined(values) || units < 2) return std::nullopt;
  const double count = static_cast<double>(units);
  const double tail = NormalShare(-std::sqrt(count / (count - 1)) * StudentQuantile(count - 1));
  return Interval{QuantileOf(values, tail), QuantileOf(values, 1 - tail)};
}

RatioSums RatioSums::Of(double numerator, double denominator, double centre) {
  const double above = numerator - centre * denominator;
  return {above, denominator, above * above, above * denominator, denominator * denominator};
}

RatioSums& RatioSums::operator+=(const RatioSums& other) {
  above += other.above;
  below += other.below;
  above_squared += other.above_squared;
  product += other.product;
  below_squared += other.below_squared;
  return *this;
}

RatioOfSums RatioSums::Ratio(double centre, std::size_t units) const {
  const double shift = above / below;  // ratio - centre
  const double squares = above_squared - 2 * shift * product + shift * shift * below_squared;
  const double count = static_cast<double>(units);
  // What rounding leaves of units that all agree is no error.
  const double noise = 1e-13 * (above_squared + shift * shift * below_squared);
  return {centre + shift, squares > noise ? std::sqrt(squares * count / (count - 1)) / below : 0.0};
}

double StudentisedValue(const RatioOfSums& estimate, const RatioOfSums& round) {
  const double difference = round.ratio - estimate.ratio;
  if (round.error > 0) return difference / round.error;
  if (std::isnan(difference)) return difference;
  return difference == 0 ? 0 : std::copysign(std::numeric_limits<double>::infinity(), difference);
}

std::optional<Interval> Studentised(const RatioOfSums& estimate, std::vector<double> values) {
  if (!(estimate.error > 0) || !DropUndefined(values)) return std::nullopt;
  return Interval{estimate.ratio - estimate.error * QuantileOf(values, 1 - kTail),
                  estimate.ratio - estimate.error * QuantileOf(values, kTail)};
}

}  // namespace velumar
