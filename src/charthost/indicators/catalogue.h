#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "charthost/indicators/indicator.h"

namespace velumar {

// Where an indicator is drawn. Each of kOwn has a pane to itself.
enum class IndicatorPane { kPrice, kVolume, kOwn };

enum class LineShape { kLine, kDashed, kDots, kSteps, kHistogram };

// Relative to the colour that the trader has chosen for the indicator.
enum class LineColour { kChosen, kNext, kUp, kDown, kFaint };

enum class ValueFormat {
  kPrice,       // with the decimals of the prices
  kDifference,  // of prices: one decimal more
  kShare,       // around 100: one decimal
  kVolume       // shortened
};

struct ParameterRow {
  const char* name;
  double standard;
  double least;
  double most;
  int decimals = 0;
};

struct LineRow {
  const char* name;  // in legends; empty for the line that is the indicator itself
  LineShape shape = LineShape::kLine;
  LineColour colour = LineColour::kChosen;
};

struct ValueScale {
  double lower;
  double upper;
};

// One kind of indicator. Menu, dialog, settings, legend and drawing take everything from here.
struct IndicatorRow {
  const char* key;    // in the settings
  const char* name;   // in menu and dialog
  const char* label;  // in legends
  IndicatorPane pane;
  ValueFormat format;
  std::vector<ParameterRow> parameters;
  std::vector<LineRow> lines;
  std::vector<double> levels = {};       // marked in its pane
  std::optional<ValueScale> scale = {};  // of its pane; otherwise that of the values in view
  Indicator (*start)(const std::vector<double>& parameters);
};

// In the order of the menu.
const std::vector<IndicatorRow>& IndicatorCatalogue();
// nullptr for an unknown key.
const IndicatorRow* FindIndicator(std::string_view key);

// An indicator as a trader has set it up.
struct ChosenIndicator {
  static constexpr int kColours = 8;
  static constexpr int kLeastHeight = 10;
  static constexpr int kMostHeight = 300;

  std::string key;
  std::vector<double> parameters;
  bool shown = true;
  int colour = 0;   // index into the colours of the palette
  int height = 30;  // of its own pane, in percent of the price pane

  bool operator==(const ChosenIndicator&) const = default;
};

// More at once would leave no room for the prices.
inline constexpr std::size_t kMostIndicators = 20;

// With the usual parameters.
ChosenIndicator UsualIndicator(const IndicatorRow& row, int colour);
// "RSI 14", "SAR 0.02 0.2"; the key if it is unknown.
std::string IndicatorLabel(const ChosenIndicator& chosen);
// The simple averages of 20 and 50 bars.
std::vector<ChosenIndicator> FirstIndicators();

}  // namespace velumar
