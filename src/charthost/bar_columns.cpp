#include "charthost/bar_columns.h"

#include <algorithm>
#include <cmath>

namespace velumar {
namespace {

BarColumn ColumnOfBar(const BarSeries& series, int bar) {
  const float close = series.closes[bar];
  const float high = std::max({series.highs[bar], series.lows[bar], close});
  const float low = std::min({series.highs[bar], series.lows[bar], close});
  const float open = series.has_opens ? std::clamp(series.opens[bar], low, high) : close;
  return {static_cast<double>(bar), open, high, low, close, series.volumes[bar], bar};
}

void Merge(BarColumn& column, const BarColumn& bar) {
  column.high = std::max(column.high, bar.high);
  column.low = std::min(column.low, bar.low);
  column.close = bar.close;
  column.volume += bar.volume;
  column.place += (bar.last_bar - column.last_bar) / 2.0;
  column.last_bar = bar.last_bar;
}

}  // namespace

int BarsPerColumn(double pixels_per_bar, double min_pixels) {
  if (pixels_per_bar >= min_pixels || pixels_per_bar <= 0) return 1;
  return static_cast<int>(std::ceil(min_pixels / pixels_per_bar));
}

void BuildColumns(const BarSeries& series, int first, int last, int bars_per_column,
                  std::vector<BarColumn>& columns) {
  columns.clear();
  const int end = std::min(last, series.size() - 1);
  for (int bar = std::max(0, first) / bars_per_column * bars_per_column; bar <= end; ++bar) {
    const BarColumn column = ColumnOfBar(series, bar);
    if (bar % bars_per_column == 0) {
      columns.push_back(column);
    } else {
      Merge(columns.back(), column);
    }
  }
}

ColumnExtremes ExtremesOf(const std::vector<BarColumn>& columns) {
  if (columns.empty()) return {};
  ColumnExtremes extremes = {columns.front().low, columns.front().high, 0};
  for (const BarColumn& column : columns) {
    extremes.low = std::min<double>(extremes.low, column.low);
    extremes.high = std::max<double>(extremes.high, column.high);
    extremes.volume = std::max(extremes.volume, column.volume);
  }
  return extremes;
}

ValueRange PriceRange(double low, double high, bool logarithmic) {
  constexpr double kMargin = 0.06;
  if (logarithmic) {
    const double margin = std::max(1.002, std::pow(high / low, kMargin));
    return {low / margin, high * margin};
  }
  const double flat = std::max(std::abs(high) * 0.002, 1e-6);
  const double margin = std::max((high - low) * kMargin, flat);
  return {low - margin, high + margin};
}

}  // namespace velumar
