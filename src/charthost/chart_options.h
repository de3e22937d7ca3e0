#pragma once

#include <array>

namespace velumar {

enum class ChartStyle { kCandles, kBars, kLine };
enum class ChartTheme { kSystem, kLight, kDark };

struct AverageOptions {
  bool shown = true;
  int period = 20;

  bool operator==(const AverageOptions&) const = default;
};

// How every chart of the program looks; the user's choice, kept from run to run.
struct ChartOptions {
  static constexpr int kLongestPeriod = 999;

  ChartStyle style = ChartStyle::kCandles;
  ChartTheme theme = ChartTheme::kSystem;
  bool volume = true;
  bool logarithmic = false;
  std::array<AverageOptions, 2> averages = {AverageOptions{true, 20}, AverageOptions{true, 50}};

  bool operator==(const ChartOptions&) const = default;
};

}  // namespace velumar
