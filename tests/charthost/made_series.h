#pragma once

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

#include "charthost/bar_series.h"
#include "support/scratch.h"

namespace velumar {

inline BarSeries SeriesOfBars(const std::vector<Bar>& bars) {
  BarSeries series;
  static_cast<BarArrays&>(series) = ArraysOf(bars);
  DescribeSeries(series);
  return series;
}

// A walk whose bars keep the rules of prices, with a contradiction now and then.
inline BarSeries RandomSeries(int count, unsigned seed) {
  std::mt19937 random(seed);
  std::normal_distribution<float> move(0, 1);
  BarSeries series;
  float price = 100;
  for (int i = 0; i < count; ++i) {
    const float open = price;
    price = std::max(5.0F, price + move(random));
    series.dates.push_back(20000101 + i);
    series.times.push_back(0);
    series.opens.push_back(random() % 50 == 0 ? open + 20 : open);
    series.highs.push_back(std::max(open, price) + std::abs(move(random)));
    series.lows.push_back(std::min(open, price) - std::abs(move(random)));
    series.closes.push_back(random() % 50 == 0 ? price + 15 : price);
    series.volumes.push_back(static_cast<float>(random() % 1000));
  }
  DescribeSeries(series);
  return series;
}

}  // namespace velumar
