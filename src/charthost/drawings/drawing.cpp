#include "charthost/drawings/drawing.h"

#include <algorithm>

#include "base/text.h"

namespace velumar {

const std::vector<DrawingRow>& DrawingCatalogue() {
  using enum DrawingKind;
  static const std::vector<DrawingRow> kRows = {
      {kHorizontalLine, "horizontal", "Horizontal line", 'H', 1},
      {kTrendLine, "trend", "Trend line", 'T', 2},
      {kRay, "ray", "Ray", 'Y', 2},
      {kChannel, "channel", "Channel", 'C', 3},
      {kRectangle, "rectangle", "Rectangle", 'Q', 2},
      {kFibonacci, "fibonacci", "Fibonacci retracement", 'F', 2},
      {kText, "text", "Text", 'X', 1},
      {kArrow, "arrow", "Arrow", 'A', 2}};
  return kRows;
}

const DrawingRow& RowOf(DrawingKind kind) {
  return *std::ranges::find(DrawingCatalogue(), kind, &DrawingRow::kind);
}

std::string DrawingTitle(const Drawing& drawing) {
  return drawing.kind == DrawingKind::kText ? "\"" + drawing.text + "\"" : RowOf(drawing.kind).name;
}

std::string KeptText(std::string_view typed) {
  std::string text(typed);
  std::ranges::replace_if(
      text, [](unsigned char c) { return c < ' ' || c == 0x7F; }, ' ');
  if (text.size() > Drawing::kLongestText) {
    std::size_t end = Drawing::kLongestText;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) --end;
    text.resize(end);
  }
  return Trimmed(text);
}

std::vector<RetracementLevel> RetracementLevels(double start, double end) {
  std::vector<RetracementLevel> levels;
  for (const double share : {0.0, 0.236, 0.382, 0.5, 0.618, 0.786, 1.0}) {
    levels.push_back({share, end + (start - end) * share});
  }
  return levels;
}

}  // namespace velumar
