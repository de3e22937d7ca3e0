#include "charthost/indicators/catalogue.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

#include "charthost/indicators/averages.h"
#include "charthost/indicators/bands.h"
#include "charthost/indicators/day_levels.h"
#include "charthost/indicators/oscillators.h"
#include "charthost/indicators/parabolic_sar.h"
#include "charthost/indicators/ranges.h"
#include "charthost/indicators/volumes.h"

namespace velumar {
namespace {

using Parameters = std::vector<double>;
using enum LineShape;
using enum LineColour;

int Whole(double parameter) { return static_cast<int>(parameter); }

// Starts an indicator whose constructor takes the parameters in their order, as these types.
template <typename T, typename... Types, std::size_t... kPlaces>
Indicator StartAt(const Parameters& parameters, std::index_sequence<kPlaces...> /*places*/) {
  return T(static_cast<Types>(parameters[kPlaces])...);
}

template <typename T, typename... Types>
Indicator Start([[maybe_unused]] const Parameters& parameters) {
  return StartAt<T, Types...>(parameters, std::index_sequence_for<Types...>());
}

ParameterRow Bars(double standard, const char* name = "Bars") { return {name, standard, 1, 999}; }

ParameterRow Width() { return {"Width", 2, 0.1, 10, 1}; }

std::vector<LineRow> BandLines() { return {{"upper"}, {"middle", kDashed}, {"lower"}}; }

std::vector<LineRow> ExtentLines() {
  return {{"high", kSteps, kUp}, {"low", kSteps, kDown}, {"close", kSteps}};
}

// Over the prices.
std::vector<IndicatorRow> PriceRows() {
  const auto row = [](const char* key, const char* name, const char* label,
                      std::vector<ParameterRow> parameters, std::vector<LineRow> lines,
                      Indicator (*start)(const Parameters&)) {
    return IndicatorRow{.key = key,
                        .name = name,
                        .label = label,
                        .pane = IndicatorPane::kPrice,
                        .format = ValueFormat::kPrice,
                        .parameters = std::move(parameters),
                        .lines = std::move(lines),
                        .start = start};
  };
  return {
      row("sma", "Simple average", "SMA", {Bars(20)}, {{""}},
          [](const Parameters& p) { return AverageOf(&Bar::close, SimpleAverage(Whole(p[0]))); }),
      row("ema", "Exponential average", "EMA", {Bars(20)}, {{""}},
          [](const Parameters& p) {
            return AverageOf(&Bar::close, ExponentialAverage(Whole(p[0])));
          }),
      row("wma", "Weighted average", "WMA", {Bars(20)}, {{""}},
          [](const Parameters& p) { return AverageOf(&Bar::close, WeightedAverage(Whole(p[0]))); }),
      row("bollinger", "Bollinger bands", "Bollinger", {Bars(20), Width()}, BandLines(),
          Start<BollingerBands, int, double>),
      row("keltner", "Keltner channel", "Keltner",
          {Bars(20), Bars(10, "Bars of the range"), Width()}, BandLines(),
          Start<KeltnerChannel, int, int, double>),
      row("donchian", "Donchian channel", "Donchian", {Bars(20)}, BandLines(),
          Start<DonchianChannel, int>),
      row("vwap", "VWAP of the day", "VWAP", {}, {{""}}, Start<DayVwap>),
      row("sar", "Parabolic SAR", "SAR", {{"Step", 0.02, 0.001, 1, 3}, {"Most", 0.2, 0.001, 1, 3}},
          {{"", kDots}}, Start<ParabolicSar, double, double>),
      row("day", "High, low, close of the day before", "Day before", {}, ExtentLines(),
          [](const Parameters&) -> Indicator { return PeriodBefore(PeriodBefore::Period::kDay); }),
      row("week", "High, low, close of the week before", "Week before", {}, ExtentLines(),
          [](const Parameters&) -> Indicator { return PeriodBefore(PeriodBefore::Period::kWeek); }),
  };
}

// Below the prices.
std::vector<IndicatorRow> LowerRows() {
  return {
      {.key = "volume",
       .name = "Average volume",
       .label = "Avg vol",
       .pane = IndicatorPane::kVolume,
       .format = ValueFormat::kVolume,
       .parameters = {Bars(20)},
       .lines = {{""}},
       .start =
           [](const Parameters& p) { return AverageOf(&Bar::volume, SimpleAverage(Whole(p[0]))); }},
      {.key = "rsi",
       .name = "Relative strength (RSI)",
       .label = "RSI",
       .pane = IndicatorPane::kOwn,
       .format = ValueFormat::kShare,
       .parameters = {Bars(14)},
       .lines = {{""}},
       .levels = {30, 70},
       .scale = {{0, 100}},
       .start = Start<RelativeStrength, int>},
      {.key = "macd",
       .name = "MACD",
       .label = "MACD",
       .pane = IndicatorPane::kOwn,
       .format = ValueFormat::kDifference,
       .parameters = {Bars(12, "Fast"), Bars(26, "Slow"), Bars(9, "Signal")},
       .lines = {{""}, {"signal", kLine, kNext}, {"difference", kHistogram, kFaint}},
       .levels = {0},
       .start = Start<ConvergenceDivergence, int, int, int>},
      {.key = "stochastic",
       .name = "Stochastic",
       .label = "Stochastic",
       .pane = IndicatorPane::kOwn,
       .format = ValueFormat::kShare,
       .parameters = {Bars(14), Bars(3, "Slowing"), Bars(3, "Signal")},
       .lines = {{"%K"}, {"%D", kDashed, kNext}},
       .levels = {20, 80},
       .scale = {{0, 100}},
       .start = Start<Stochastic, int, int, int>},
      {.key = "atr",
       .name = "Average true range (ATR)",
       .label = "ATR",
       .pane = IndicatorPane::kOwn,
       .format = ValueFormat::kDifference,
       .parameters = {Bars(14)},
       .lines = {{""}},
       .start = Start<AverageTrueRange, int>},
      {.key = "adx",
       .name = "Directional movement (ADX)",
       .label = "ADX",
       .pane = IndicatorPane::kOwn,
       .format = ValueFormat::kShare,
       .parameters = {Bars(14)},
       .lines = {{""}, {"+DI", kLine, kUp}, {"-DI", kDashed, kDown}},
       .levels = {25},
       .start = Start<DirectionalMovement, int>},
      {.key = "obv",
       .name = "On-balance volume (OBV)",
       .label = "OBV",
       .pane = IndicatorPane::kOwn,
       .format = ValueFormat::kVolume,
       .parameters = {},
       .lines = {{""}},
       .start = Start<OnBalanceVolume>},
      {.key = "momentum",
       .name = "Momentum",
       .label = "Momentum",
       .pane = IndicatorPane::kOwn,
       .format = ValueFormat::kShare,
       .parameters = {Bars(12)},
       .lines = {{""}},
       .levels = {100},
       .start = Start<Momentum, int>},
  };
}

std::vector<IndicatorRow> AllRows() {
  std::vector<IndicatorRow> rows = PriceRows();
  for (IndicatorRow& row : LowerRows()) rows.push_back(std::move(row));
  return rows;
}

// The shortest text: "14", "0.02".
std::string NumberText(double number) {
  std::array<char, 32> text;
  return {text.begin(), std::to_chars(text.begin(), text.end(), number).ptr};
}

}  // namespace

const std::vector<IndicatorRow>& IndicatorCatalogue() {
  static const std::vector<IndicatorRow> rows = AllRows();
  return rows;
}

const IndicatorRow* FindIndicator(std::string_view key) {
  const std::vector<IndicatorRow>& rows = IndicatorCatalogue();
  const auto found = std::ranges::find_if(rows, [key](const auto& row) { return row.key == key; });
  return found == rows.end() ? nullptr : &*found;
}

ChosenIndicator UsualIndicator(const IndicatorRow& row, int colour) {
  ChosenIndicator chosen = {.key = row.key, .parameters = {}, .colour = colour};
  for (const ParameterRow& parameter : row.parameters) {
    chosen.parameters.push_back(parameter.standard);
  }
  return chosen;
}

std::string IndicatorLabel(const ChosenIndicator& chosen) {
  const IndicatorRow* const row = FindIndicator(chosen.key);
  if (row == nullptr) return chosen.key;
  std::string label = row->label;
  for (const double parameter : chosen.parameters) label += " " + NumberText(parameter);
  return label;
}

std::vector<ChosenIndicator> FirstIndicators() {
  return {{.key = "sma", .parameters = {20}, .colour = 0},
          {.key = "sma", .parameters = {50}, .colour = 1}};
}

}  // namespace velumar
