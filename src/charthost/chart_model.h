#pragma once

#include <array>
#include <vector>

#include "charthost/bar_columns.h"
#include "charthost/bar_series.h"
#include "charthost/view_window.h"

namespace velumar {

enum class ChartStyle { kCandles, kBars, kLine };
enum class ChartTheme { kSystem, kLight, kDark };

struct AverageOptions {
  bool shown = true;
  int period = 20;

  bool operator==(const AverageOptions&) const = default;
};

// How all charts of the program look: the trader's choice, saved between runs of the program.
struct ChartOptions {
  static constexpr int kLongestPeriod = 999;

  ChartStyle style = ChartStyle::kCandles;
  ChartTheme theme = ChartTheme::kSystem;
  bool volume = true;
  bool logarithmic = false;
  bool positions = true;  // orders and held sides, if Velumar shows them
  std::array<AverageOptions, 2> averages = {AverageOptions{true, 20}, AverageOptions{true, 50}};

  bool operator==(const ChartOptions&) const = default;
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
  // The same series after it was read again; ViewWindow::SetBars says where the window is then.
  void UpdateSeries(BarSeries series);

  const BarSeries& Series() const { return series_; }
  ViewWindow& Window() { return window_; }
  const ViewWindow& Window() const { return window_; }

  // Computes the values below for a plot of this width.
  void Layout(double pixel_width);
  double PixelsPerBar() const { return pixels_per_bar_; }
  int BarsInColumn() const { return bars_in_column_; }
  const std::vector<BarColumn>& Columns() const { return columns_; }
  bool Logarithmic() const { return logarithmic_; }
  ValueRange Prices() const { return prices_; }
  double HighestVolume() const { return highest_volume_; }

  // One value per bar, NaN if there is none; empty if the average isn't shown.
  const std::vector<double>& Average(std::size_t index) const { return averages_[index]; }
  bool ShowsVolume() const { return options_.volume && series_.has_volumes; }

 private:
  void ComputeAverages();

  ChartOptions options_;
  BarSeries series_;
  ViewWindow window_;
  std::array<std::vector<double>, 2> averages_;
  std::vector<BarColumn> columns_;
  double pixels_per_bar_ = 1;
  int bars_in_column_ = 1;
  bool logarithmic_ = false;
  ValueRange prices_ = {0, 1};
  double highest_volume_ = 0;
};

}  // namespace velumar
