#pragma once

#include <array>
#include <vector>

#include "charthost/bar_columns.h"
#include "charthost/bar_series.h"
#include "charthost/chart_options.h"
#include "charthost/view_window.h"

namespace velumar {

// The bars of one chart, the window on them, and what is to be painted for that window. Memory is
// kept from one layout to the next, so that drawing allocates nothing per bar.
class ChartModel {
 public:
  ChartModel() { SetOptions({}); }

  const ChartOptions& Options() const { return options_; }
  void SetOptions(const ChartOptions& options);

  // Another series: the window goes to its newest bar.
  void ShowSeries(BarSeries series);
  // The same series read again: the window stays as ViewWindow::SetBars tells.
  void UpdateSeries(BarSeries series);

  const BarSeries& Series() const { return series_; }
  ViewWindow& Window() { return window_; }
  const ViewWindow& Window() const { return window_; }

  // Works out the members below for a plot of this width.
  void Layout(double pixel_width);
  double PixelsPerBar() const { return pixels_per_bar_; }
  int BarsInColumn() const { return bars_in_column_; }
  const std::vector<BarColumn>& Columns() const { return columns_; }
  bool Logarithmic() const { return logarithmic_; }
  ValueRange Prices() const { return prices_; }
  double HighestVolume() const { return highest_volume_; }

  // One value per bar, NaN where there is none.
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
