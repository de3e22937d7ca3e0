#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "charthost/frames.h"

namespace velumar {

// How many charts are on the screen at once, and where.
enum class Tiling { kTabs, kSideBySide, kStacked, kFour };

int TileCount(Tiling tiling);

// One chart of a layout.
struct LaidChart {
  std::string symbol;           // of the same folder; empty: the series that the layout opens with
  int interval = -1;            // with a symbol
  std::map<int, Frame> frames;  // to show, by interval of the series

  bool operator==(const LaidChart&) const = default;
};

// The charts that open together: those of one series, each in its own frame, and others of its
// folder. The order is that of their tabs.
struct ChartLayout {
  static constexpr std::size_t kMostCharts = 16;

  Tiling tiling = Tiling::kTabs;
  std::vector<LaidChart> charts = {LaidChart()};

  bool operator==(const ChartLayout&) const = default;
};

// "5=60": of series of five minutes the hours. Reading leaves out what it can't read.
std::string FrameText(int interval, Frame frame);
void ReadFrame(const std::string& text, std::map<int, Frame>& frames);

// How a layout is saved: as JSON.
//   {"tiling": "four", "charts": [{"frames": ["5=60", "-1=week"]}, {"symbol": "SET", ...}]}
// Reading leaves out what it can't read; without any chart the layout is the usual one.
std::string LayoutText(const ChartLayout& layout);
ChartLayout ReadLayout(std::string_view text);

}  // namespace velumar
