#pragma once

#include "charthost/bar_series.h"

namespace velumar {

// Bars of one day without volume whose four prices are these closes.
inline BarSeries SeriesOf(std::vector<float> closes) {
  BarSeries series;
  const std::size_t count = closes.size();
  series.dates.assign(count, 20150608);
  series.times.assign(count, 0);
  series.volumes.assign(count, 0);
  series.opens = series.highs = series.lows = series.closes = std::move(closes);
  DescribeSeries(series);
  return series;
}

}  // namespace velumar
