#include "charthost/indicators/bands.h"

namespace velumar {

IndicatorLines BollingerBands::operator()(const Bar& bar) {
  window_.Add(bar.close);
  if (!window_.Full()) return Lines(kNoValue);
  const double middle = window_.Mean();
  const double reach = width_ * window_.Deviation();
  return Lines(middle + reach, middle, middle - reach);
}

IndicatorLines KeltnerChannel::operator()(const Bar& bar) {
  const double middle = middle_.Add(bar.close);
  const double reach = width_ * range_.Add(bar);
  return Lines(middle + reach, middle, middle - reach);
}

IndicatorLines DonchianChannel::operator()(const Bar& bar) {
  highs_.Add(bar.high);
  lows_.Add(bar.low);
  if (!highs_.Full()) return Lines(kNoValue);
  const double upper = highs_.Highest();
  const double lower = lows_.Lowest();
  return Lines(upper, (upper + lower) / 2, lower);
}

}  // namespace velumar
