#include "charthost/chart_model.h"

#include <utility>

namespace velumar {
namespace {

// In pixels. Narrower candles and bars can't be told apart; a line can be as fine as the screen.
double MinColumnWidth(ChartStyle style) { return style == ChartStyle::kLine ? 1 : 4; }

}  // namespace

void ChartModel::SetOptions(const ChartOptions& options) {
  options_ = options;
  ComputeAverages();
}

void ChartModel::ShowSeries(BarSeries series) {
  series_ = std::move(series);
  window_.Reset(series_.size());
  ComputeAverages();
}

void ChartModel::UpdateSeries(BarSeries series) {
  series_ = std::move(series);
  window_.SetBars(series_.size());
  ComputeAverages();
}

void ChartModel::ComputeAverages() {
  for (std::size_t i = 0; i < averages_.size(); ++i) {
    if (options_.averages[i].shown) {
      MovingAverage(series_.closes, options_.averages[i].period, averages_[i]);
    } else {
      averages_[i].clear();
    }
  }
}

void ChartModel::Layout(double pixel_width) {
  pixels_per_bar_ = pixel_width / window_.Span();
  bars_in_column_ = BarsPerColumn(pixels_per_bar_, MinColumnWidth(options_.style));
  BuildColumns(series_, window_.FirstBar(), window_.LastBar(), bars_in_column_, columns_);
  const ColumnExtremes extremes = ExtremesOf(columns_);
  logarithmic_ = options_.logarithmic && extremes.low > 0;
  prices_ = PriceRange(extremes.low, extremes.high, logarithmic_);
  highest_volume_ = extremes.volume;
}

}  // namespace velumar
