#pragma once

#include <vector>

#include "charthost/bar_series.h"

namespace velumar {

// What one candle on the screen stands for: one bar, or several where more bars than pixels are in
// view. Places count bars, so a column of bars 10 to 13 stands at 11.5.
struct BarColumn {
  double place;
  float open;
  float high;
  float low;
  float close;
  double volume;
  int last_bar;
};

// How many bars share a column so that a column is at least `min_pixels` wide.
int BarsPerColumn(double pixels_per_bar, double min_pixels);

// Fills `columns` with the bars from `first` to `last`, both included, `bars_per_column` each.
// Columns begin at multiples of that number, so they don't change while the chart is moved. Highs
// and lows enclose the closes, and opens lie between both, whatever the file holds.
void BuildColumns(const BarSeries& series, int first, int last, int bars_per_column,
                  std::vector<BarColumn>& columns);

struct ValueRange {
  double lower;
  double upper;
};

// What a price axis shows for these columns: their lows and highs with some air, never empty.
// A logarithmic axis needs prices above 0; CanBeLogarithmic tells.
ValueRange PriceRange(const std::vector<BarColumn>& columns, bool logarithmic);
bool CanBeLogarithmic(const std::vector<BarColumn>& columns);

double HighestVolume(const std::vector<BarColumn>& columns);

}  // namespace velumar
