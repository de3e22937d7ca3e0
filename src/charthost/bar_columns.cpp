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

ValueRange PriceRange(const std::vector<BarColumn>& columns, bool logarithmic) {
  if (columns.empty()) return {0, 1};
  double lower = columns.front().low;
  double upper = columns.front().high;
  for (const BarColumn& column : columns) {
    lower = std::min<double>(lower, column.low);
    upper = std::max<double>(upper, column.high);
  }
  if (logarithmic) {
    const double margin = std::max(1.002, std::pow(upper / lower, 0.06));
    return {lower / margin, upper * margin};
  }
  const double flat = std::max(std::abs(upper) * 0.002, 1e-6);
  const double margin = std::max((upper - lower) * 0.06, flat);
  return {lower - margin, upper + margin};
}

bool CanBeLogarithmic(const std::vector<BarColumn>& columns) {
  return std::all_of(columns.begin(), columns.end(),
                     [](const BarColumn& column) { return column.low > 0; });
}

double HighestVolume(const std::vector<BarColumn>& columns) {
  double highest = 0;
  for (const BarColumn& column : columns) highest = std::max(highest, column.volume);
  return highest;
}

}  // namespace velumar
