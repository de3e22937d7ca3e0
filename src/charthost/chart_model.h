#pragma once

#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "charthost/bar_columns.h"
#include "charthost/bar_series.h"
#include "charthost/frames.h"
#include "charthost/heikin_ashi.h"
#include "charthost/indicators/catalogue.h"
#include "charthost/indicators/indicator_run.h"
#include "charthost/view_window.h"

namespace velumar {

enum class ChartStyle { kCandles, kHollow, kHeikinAshi, kBars, kLine, kArea };
// Draws one line from close to close.
constexpr bool IsLine(ChartStyle style) {
  return style == ChartStyle::kLine || style == ChartStyle::kArea;
}

enum class PriceScale { kLinear, kLogarithmic, kPercent };
enum class ChartTheme { kSystem, kLight, kDark };

// How all charts of the program look: the trader's choice, saved between runs of the program.
struct ChartOptions {
  ChartStyle style = ChartStyle::kCandles;
  ChartTheme theme = ChartTheme::kSystem;
  bool safe_colours = false;  // for any colour vision
  bool volume = true;
  PriceScale scale = PriceScale::kLinear;
  bool axis_at_left = false;
  bool drawing_bar = true;
  bool positions = true;  // orders and held sides, if Velumar shows them
  std::vector<ChosenIndicator> indicators = FirstIndicators();
  int volume_height = 25;  // of the volume's pane, in percent of the price pane
  // The frame chosen last, by interval of the series: that of the next chart.
  std::map<int, Frame> frames = {};

  bool operator==(const ChartOptions&) const = default;
};

// An indicator of a chart with its values at the bars.
struct ModelIndicator {
  std::size_t place;  // in the options
  ChosenIndicator choice;
  const IndicatorRow* row;
  IndicatorRun run;
  // Lowest and highest value of the columns, set by the layout. NaN if there is none.
  ValueRange shown = {kNoValue, kNoValue};
};

// The bars of one chart, the window on them, and what to draw in that window. Memory is kept from
// one layout to the next.
class ChartModel {
 public:
  ChartModel() { SetOptions({}); }

  const ChartOptions& Options() const { return options_; }
  void SetOptions(const ChartOptions& options);

  // Shows another series at its newest bar.
  void ShowSeries(BarSeries series);
  // The same series in another frame. The newest bar stays in view, or the last date.
  void ShowFrame(BarSeries series);
  // The same series after it was read again; ViewWindow::SetBars says where the window is then.
  void UpdateSeries(BarSeries series);

  const BarSeries& Series() const { return series_; }
  ViewWindow& Window() { return window_; }
  const ViewWindow& Window() const { return window_; }

  // Prices of lines that belong into the view if they are not far from the bars.
  void SetLevels(std::vector<double> levels) { levels_ = std::move(levels); }

  // Computes the values below for a plot of this width.
  void Layout(double pixel_width);
  double PixelsPerBar() const { return pixels_per_bar_; }
  int BarsInColumn() const { return bars_in_column_; }
  const std::vector<BarColumn>& Columns() const { return columns_; }
  bool Logarithmic() const { return logarithmic_; }
  // The price from which the axis counts percent: the close of the first bar in view. Nothing on
  // the other scales, and for a close that isn't above 0.
  std::optional<double> PercentBase() const;
  // A price as the axis shows it.
  std::string AxisText(double price) const;
  ValueRange Prices() const { return prices_; }
  double HighestVolume() const { return highest_volume_; }

  // Those that the options show.
  const std::vector<ModelIndicator>& Indicators() const { return indicators_; }
  bool ShowsVolume() const { return options_.volume && series_.has_volumes; }

 private:
  void SetUpIndicators();
  void FollowSeries(BarSeries series);
  // The prices with what lies close to them.
  ValueRange WithOverlays(ValueRange prices) const;

  ChartOptions options_;
  BarSeries series_;
  ViewWindow window_;
  std::vector<ModelIndicator> indicators_;
  HeikinAshi heikin_ashi_;
  std::vector<double> levels_;
  std::vector<BarColumn> columns_;
  double pixels_per_bar_ = 1;
  int bars_in_column_ = 1;
  bool logarithmic_ = false;
  ValueRange prices_ = {0, 1};
  double highest_volume_ = 0;
};

}  // namespace velumar
