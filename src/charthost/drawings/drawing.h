#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "charthost/drawings/time_axis.h"

namespace velumar {

enum class DrawingKind : std::uint8_t {
  kHorizontalLine,
  kTrendLine,
  kRay,
  kChannel,
  kRectangle,
  kFibonacci,
  kText,
  kArrow
};

// One kind of drawing. Menu, toolbar, keys and file take everything from here.
struct DrawingRow {
  DrawingKind kind;
  const char* key;  // in the file
  const char* name;
  char letter;          // the key that starts one: none that a run or a chart uses
  std::size_t anchors;  // how many it has
};

// In the order of the menu.
const std::vector<DrawingRow>& DrawingCatalogue();
const DrawingRow& RowOf(DrawingKind kind);

struct Anchor {
  TimeAnchor time = {};
  double price = 0;

  bool operator==(const Anchor&) const = default;
};

struct Drawing {
  static constexpr int kColours = 8;
  static constexpr std::size_t kLongestText = 200;  // bytes

  DrawingKind kind = DrawingKind::kTrendLine;
  // A line, ray, arrow or channel from the first to the second, whose other line goes through the
  // third; corners of a rectangle; 100 % and 0 % of a retracement.
  std::vector<Anchor> anchors = {};
  int colour = 0;         // index into the colours of the palette
  std::string text = {};  // of a text
  // What the trader knew: the end of the newest bar when it was drawn or last moved.
  std::int64_t known = 0;

  bool operator==(const Drawing&) const = default;
};

// "Trend line", of a text its words.
std::string DrawingTitle(const Drawing& drawing);

// The text as it can be kept: one line, without control characters, at most kLongestText bytes and
// no half letter at its end.
std::string KeptText(std::string_view typed);

struct RetracementLevel {
  double share;
  double price;
};

// 0, 23.6, 38.2, 50, 61.8, 78.6 and 100 % of the way back from `end` to `start`: 0 % is at the end
// of the move.
std::vector<RetracementLevel> RetracementLevels(double start, double end);

}  // namespace velumar
