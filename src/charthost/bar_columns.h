#pragma once

#include <vector>

#include "charthost/bar_series.h"

namespace velumar {

// One candle on the screen: one bar, or several if more bars than pixels are in view. Places count
// bars, so the column of bars 10 to 13 is at 11.5.
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

// Fills `columns` with the bars from `first` to `last`, both included. A column begins at a
// multiple of `bars_per_column`, so scrolling doesn't change it. Its high and low are those of its
// bars and their closes, and its open lies between them, whatever the file holds.
void BuildColumns(const BarSeries& series, int first, int last, int bars_per_column,
                  std::vector<BarColumn>& columns);

struct ColumnExtremes {
  double low = 0;
  double high = 1;
  double volume = 0;  // the highest
};

ColumnExtremes ExtremesOf(const std::vector<BarColumn>& columns);

struct ValueRange {
  double lower;
  double upper;
};

// The range of a price axis: `low` to `high` with a margin, never empty. A logarithmic axis needs
// prices above 0.
ValueRange PriceRange(double low, double high, bool logarithmic);

}  // namespace velumar
