#include "charthost/readout.h"

#include <cmath>

#include "charthost/date_text.h"
#include "charthost/price_text.h"

namespace velumar {
namespace {

ReadoutTone ToneOf(double change) {
  if (change > 0) return ReadoutTone::kUp;
  return change < 0 ? ReadoutTone::kDown : ReadoutTone::kPlain;
}

}  // namespace

std::vector<ReadoutPart> BarReadout(const BarSeries& series, int bar) {
  const auto price = [&](float value) { return PriceText(value, series.decimals); };
  std::vector<ReadoutPart> parts;
  parts.push_back({"", LongDayText(series.dates[bar])});
  if (series.has_times) parts.push_back({"", TimeText(series.times[bar])});
  if (series.has_opens) parts.push_back({"O", price(series.opens[bar])});
  parts.push_back({"H", price(series.highs[bar])});
  parts.push_back({"L", price(series.lows[bar])});
  parts.push_back({"C", price(series.closes[bar])});
  if (series.has_volumes) parts.push_back({"Vol", VolumeText(series.volumes[bar])});
  if (bar > 0) {
    const float close = series.closes[bar];
    const float previous = series.closes[bar - 1];
    parts.push_back({"Change", ChangeText(close, previous, series.decimals),
                     ToneOf(static_cast<double>(close) - previous)});
  }
  return parts;
}

std::string AverageText(double average, int decimals) {
  return std::isnan(average) ? "-" : PriceText(average, decimals);
}

}  // namespace velumar
