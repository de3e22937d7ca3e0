#pragma once

#include <string>
#include <vector>

#include "charthost/bar_series.h"

namespace velumar {

enum class ReadoutTone { kPlain, kUp, kDown };

// One label with its value, as the line above the chart shows them side by side.
struct ReadoutPart {
  std::string label;
  std::string value;
  ReadoutTone tone = ReadoutTone::kPlain;
};

// Date, time, open, high, low, close, volume and change of a bar, without what the series lacks.
std::vector<ReadoutPart> BarReadout(const BarSeries& series, int bar);

// The value text of an average at a bar: "-" where there are too few bars for it.
std::string AverageText(double average, int decimals);

}  // namespace velumar
