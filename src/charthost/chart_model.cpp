#include "charthost/chart_model.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "charthost/bar_text.h"

namespace velumar {
namespace {

// In pixels. Narrower candles and bars can't be told apart; a line can be as fine as the screen.
double MinColumnWidth(ChartStyle style) { return IsLine(style) ? 1 : 4; }

ValueRange ShownValues(const IndicatorRun& run, const std::vector<BarColumn>& columns) {
  ValueRange shown = {kNoValue, kNoValue};
  for (std::size_t line = 0; line < run.LineCount(); ++line) {
    for (const BarColumn& column : columns) {
      const double value = run.Line(line)[static_cast<std::size_t>(column.last_bar)];
      shown.lower = std::fmin(shown.lower, value);
      shown.upper = std::fmax(shown.upper, value);
    }
  }
  return shown;
}

int LastStoredBar(const BarSeries& series, int bar) {
  if (series.starts.empty()) return bar;
  const auto next = static_cast<std::size_t>(bar) + 1;
  return (next < series.starts.size() ? series.starts[next] : series.stored_bars) - 1;
}

}  // namespace

void ChartModel::SetOptions(const ChartOptions& options) {
  options_ = options;
  SetUpIndicators();
}

void ChartModel::ShowSeries(BarSeries series) {
  FollowSeries(std::move(series));
  window_.Reset(series_.size());
}

void ChartModel::ShowFrame(BarSeries series) {
  const int last = window_.LastBar();
  const bool newest_shown = last < 0 || window_.Shows(series_.size() - 1);
  const int stored = newest_shown ? 0 : LastStoredBar(series_, last);
  ShowSeries(std::move(series));
  if (newest_shown) return;
  constexpr double kHalfBar = 0.45;
  const double end = BarOfStored(series_, stored).value_or(series_.size() - 1) + kHalfBar;
  window_.ShowBetween(end - window_.Span(), end);
}

void ChartModel::UpdateSeries(BarSeries series) {
  FollowSeries(std::move(series));
  window_.SetBars(series_.size());
}

void ChartModel::FollowSeries(BarSeries series) {
  const int same = SameBars(series_, series);
  series_ = std::move(series);
  heikin_ashi_.Forget(same);
  for (ModelIndicator& indicator : indicators_) indicator.run.Follow(series_, same);
}

// Indicators with the same parameters as before keep their values.
void ChartModel::SetUpIndicators() {
  std::vector<ModelIndicator> old = std::exchange(indicators_, {});
  for (std::size_t place = 0; place < options_.indicators.size(); ++place) {
    const ChosenIndicator& choice = options_.indicators[place];
    const IndicatorRow* const row = FindIndicator(choice.key);
    if (row == nullptr || !choice.shown) continue;
    const auto found = std::ranges::find_if(old, [&](const ModelIndicator& one) {
      return one.row == row && one.choice.parameters == choice.parameters;
    });
    if (found != old.end()) {
      indicators_.push_back({place, choice, row, std::move(found->run)});
      old.erase(found);
    } else {
      IndicatorRun run(row->start(choice.parameters), row->lines.size());
      run.Follow(series_, 0);
      indicators_.push_back({place, choice, row, std::move(run)});
    }
  }
}

void ChartModel::Layout(double pixel_width) {
  pixels_per_bar_ = pixel_width / window_.Span();
  bars_in_column_ = BarsPerColumn(pixels_per_bar_, MinColumnWidth(options_.style));
  const bool averaged = options_.style == ChartStyle::kHeikinAshi;
  BuildColumns(averaged ? heikin_ashi_.Of(series_) : series_, window_.FirstBar(), window_.LastBar(),
               bars_in_column_, columns_);
  for (ModelIndicator& indicator : indicators_) {
    indicator.shown = ShownValues(indicator.run, columns_);
  }
  const ColumnExtremes extremes = ExtremesOf(columns_);
  const ValueRange shown = WithOverlays({extremes.low, extremes.high});
  logarithmic_ = options_.scale == PriceScale::kLogarithmic && shown.lower > 0;
  prices_ = PriceRange(shown.lower, shown.upper, logarithmic_);
  highest_volume_ = extremes.volume;
  for (const ModelIndicator& indicator : indicators_) {
    if (indicator.row->pane != IndicatorPane::kVolume) continue;
    highest_volume_ = std::fmax(highest_volume_, indicator.shown.upper);
  }
}

std::optional<double> ChartModel::PercentBase() const {
  const int bar = window_.FirstBar();
  const bool any = options_.scale == PriceScale::kPercent && bar < series_.size();
  if (!any || series_.closes[bar] <= 0) return std::nullopt;
  return series_.closes[bar];
}

std::string ChartModel::AxisText(double price) const {
  const std::optional<double> base = PercentBase();
  return base ? PercentText((price / *base - 1) * 100) : PriceText(price, series_.decimals);
}

// An average far away from the price must not squeeze the bars.
ValueRange ChartModel::WithOverlays(ValueRange prices) const {
  constexpr double kMostRoom = 0.25;
  const double room = (prices.upper - prices.lower) * kMostRoom;
  const double least = prices.lower > 0 ? prices.lower / 2 : prices.lower - room;
  ValueRange wider = prices;
  for (const ModelIndicator& indicator : indicators_) {
    if (indicator.row->pane != IndicatorPane::kPrice || std::isnan(indicator.shown.lower)) continue;
    const double lowest = std::max({indicator.shown.lower, prices.lower - room, least});
    wider.lower = std::min(wider.lower, lowest);
    wider.upper = std::max(wider.upper, std::min(indicator.shown.upper, prices.upper + room));
  }
  if (!options_.positions) return wider;
  for (const double level : levels_) {
    if (level < std::max(prices.lower - room, least) || level > prices.upper + room) continue;
    wider.lower = std::min(wider.lower, level);
    wider.upper = std::max(wider.upper, level);
  }
  return wider;
}

}  // namespace velumar
