#include "charthost/indicators/oscillators.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace velumar {

IndicatorLines RelativeStrength::operator()(const Bar& bar) {
  const std::optional<double> previous = std::exchange(close_, bar.close);
  if (!previous) return Lines(kNoValue);
  const double change = *close_ - *previous;
  const double gain = gains_.Add(std::max(0.0, change));
  const double loss = losses_.Add(std::max(0.0, -change));
  if (std::isnan(gain)) return Lines(kNoValue);
  return Lines(gain + loss > 0 ? 100 * gain / (gain + loss) : 50);
}

IndicatorLines ConvergenceDivergence::operator()(const Bar& bar) {
  const double macd = fast_.Add(bar.close) - slow_.Add(bar.close);
  if (std::isnan(macd)) return Lines(kNoValue);
  const double signal = signal_.Add(macd);
  return Lines(macd, signal, macd - signal);
}

IndicatorLines Stochastic::operator()(const Bar& bar) {
  highs_.Add(bar.high);
  lows_.Add(bar.low);
  if (!highs_.Full()) return Lines(kNoValue);
  const double lowest = lows_.Lowest();
  const double range = highs_.Highest() - lowest;
  const double k = slowing_.Add(range > 0 ? 100 * (bar.close - lowest) / range : 50);
  if (std::isnan(k)) return Lines(kNoValue);
  return Lines(k, signal_.Add(k));
}

IndicatorLines Momentum::operator()(const Bar& bar) {
  double momentum = kNoValue;
  if (closes_.Full() && closes_.Oldest() != 0) momentum = 100 * bar.close / closes_.Oldest();
  closes_.Add(bar.close);
  return Lines(momentum);
}

}  // namespace velumar
