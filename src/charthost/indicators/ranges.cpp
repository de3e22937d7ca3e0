#include "charthost/indicators/ranges.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace velumar {

double TrueRange(const Bar& bar, const std::optional<Bar>& previous) {
  const double high = bar.high;
  const double low = bar.low;
  if (!previous) return high - low;
  return std::max(high, double{previous->close}) - std::min(low, double{previous->close});
}

double AverageTrueRange::Add(const Bar& bar) {
  const double range = TrueRange(bar, previous_);
  previous_ = bar;
  return average_.Add(range);
}

DirectionalMovement::DirectionalMovement(int period)
    : range_(WilderAverage(period)),
      up_(WilderAverage(period)),
      down_(WilderAverage(period)),
      index_(WilderAverage(period)) {}

IndicatorLines DirectionalMovement::operator()(const Bar& bar) {
  const std::optional<Bar> previous = std::exchange(previous_, bar);
  if (!previous) return Lines(kNoValue);
  const double rise = double{bar.high} - previous->high;
  const double fall = double{previous->low} - bar.low;
  const double range = range_.Add(TrueRange(bar, previous));
  const double up = up_.Add(rise > fall && rise > 0 ? rise : 0);
  const double down = down_.Add(fall > rise && fall > 0 ? fall : 0);
  if (std::isnan(range)) return Lines(kNoValue);
  const double plus = range > 0 ? 100 * up / range : 0;
  const double minus = range > 0 ? 100 * down / range : 0;
  const double sum = plus + minus;
  return Lines(index_.Add(sum > 0 ? 100 * std::abs(plus - minus) / sum : 0), plus, minus);
}

}  // namespace velumar
