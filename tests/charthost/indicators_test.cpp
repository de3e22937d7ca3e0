#include <gmock/gmock.h>

#include <cmath>
#include <random>

#include "charthost/indicators/catalogue.h"
#include "charthost/indicators/indicator_run.h"
#include "charthost/indicators/indicator_text.h"
#include "charthost/indicators/parabolic_sar.h"
#include "charthost/indicators/ranges.h"
#include "charthost/made_series.h"

namespace velumar {
namespace {

using Numbers = std::vector<double>;

std::vector<float> Floats(const Numbers& numbers) { return {numbers.begin(), numbers.end()}; }

// Bars of these prices, a day apart; without highs and lows these are the closes.
BarArrays Bars(const Numbers& closes, const Numbers& highs = {}, const Numbers& lows = {},
               const Numbers& volumes = {}) {
  BarArrays bars;
  for (std::size_t i = 0; i < closes.size(); ++i) {
    bars.dates.push_back(20100101 + static_cast<int>(i));
  }
  bars.times.assign(closes.size(), 0);
  bars.closes = Floats(closes);
  bars.opens = bars.closes;
  bars.highs = highs.empty() ? bars.closes : Floats(highs);
  bars.lows = lows.empty() ? bars.closes : Floats(lows);
  bars.volumes = volumes.empty() ? std::vector<float>(closes.size()) : Floats(volumes);
  return bars;
}

IndicatorRun RunOf(const char* key, const Numbers& parameters, const BarArrays& bars) {
  const IndicatorRow& row = *FindIndicator(key);
  IndicatorRun run(row.start(parameters), row.lines.size());
  run.Follow(bars, 0);
  return run;
}

// One line of an indicator in a published table: its values from bar `first` (from 0) on. The bars
// before it are blank.
struct Published {
  const char* source;
  const char* key;
  Numbers parameters;
  std::size_t line;
  BarArrays bars;
  int first;
  Numbers values;
  double rounding;
};

// Steven B. Achelis, "Technical Analysis from A to Z", 2nd edition, 2000, with the page.
std::vector<Published> AchelisTables() {
  const Numbers averaged = {25, 24.875, 24.781, 24.594, 24.5, 24.625, 25.219, 27.25};
  const Numbers timed = {13,    12.6667, 12.6667, 12.6667, 13.0833, 14,      14.1667, 15.3333,
                         15.25, 14.1667, 14.1667, 14,      13.8333, 13.8333, 14.3333, 15.1667};
  const Numbers counted = {20.5625, 20.375,  20.0625, 19.5,   19.8125,
                           19.8125, 20.0625, 20.0625, 20.375, 20.75};
  const Numbers volumes = {27802, 16178, 22766, 46074, 22904, 20428, 29260, 30652, 38332, 40054};
  const Numbers balances = {0, -16178, -38944, -85018, -62114, -62114, -32854, -32854, 5478, 45532};
  const Numbers strong = {37.875, 39.5,   38.75, 39.8125, 40,      39.875,  40.1875, 41.25,
                          41.125, 41.625, 41.25, 40.1875, 39.9375, 39.9375, 40.5,    41.9375};
  const Numbers strengths = {76.6667, 78.8679, 84.9158, 81.4863, 84.5968, 73.0851,
                             49.3173, 45.0119, 45.0119, 57.9252, 75.9596};
  const BarArrays ranged =
      Bars({12.25, 12.1875, 12.25, 12.1875, 12.375, 12.3125, 12.2188, 12.3438, 12.5},
           {12.3125, 12.25, 12.3125, 12.2812, 12.375, 12.375, 12.3125, 12.375, 12.5},
           {12.1875, 12.1562, 12.1875, 12.125, 12.125, 12.2812, 12.1875, 12.1875, 12.2812});
  const Numbers sar_highs = {45.3125, 46.3125, 46.9375, 47,      47.5312, 47.5938, 47.5,
                             47.1562, 46.5625, 46.1172, 44.9062, 44,      44.625,  46.1875,
                             46.5625, 46.9375, 46.7812, 47.625,  45.8125, 45.4375, 47,
                             47.0938, 47.25,   46.75,   46.375,  46.4375, 45.375,  44.9375};
  const Numbers sar_lows = {44.1562, 45.125,  44.75,   46.0312, 46.3438, 46.0625, 47.0625,
                            46.1875, 45.1562, 44.8438, 43.6562, 42.5312, 42.625,  45.125,
                            45.25,   45.875,  45.5625, 46.1328, 44.8438, 44.6562, 45.625,
                            46.0625, 45.9688, 45.75,   45.1562, 45.25,   42.1875, 43.2188};
  const Numbers stops = {47.5938,     47.545048,   47.43699808, 47.2101502,  46.83583418,
                         46.49146345, 42.5312,     42.611826,   42.78485296, 42.95095884,
                         43.23140131, 43.49501723, 43.7428162,  43.97574723, 44.19470239,
                         44.40052025, 44.59398903, 44.77584969, 47.625,      47.51625};
  return {
      {"page 207", "sma", {5}, 0, Bars(averaged), 4, {24.75, 24.675, 24.744, 25.238}, 6e-4},
      {"page 213", "wma", {5}, 0, Bars(averaged), 4, {24.6646, 24.6229, 24.8042, 25.6396}, 6e-4},
      {"page 197", "momentum", {12}, 0, Bars(timed), 12, {106.41, 109.21, 113.16, 119.74}, 1e-2},
      {"page 231", "obv", {}, 0, Bars(counted, {}, {}, volumes), 0, balances, 1e-9},
      {"page 299", "rsi", {5}, 0, Bars(strong), 5, strengths, 1e-3},
      {"page 70", "atr", {4}, 0, ranged, 3, {.125, .1563, .1406, .1367, .1494, .1668}, 1e-4},
      // The spreadsheet to page 244, after the first turn.
      {"page 244", "sar", {0.02, 0.2}, 0, Bars(sar_lows, sar_highs, sar_lows), 8, stops, 1e-5},
  };
}

// The spreadsheets of StockCharts' ChartSchool, by their file.
std::vector<Published> ChartSchoolTables() {
  const BarArrays banded =
      Bars({86.1557, 89.0867, 88.7829, 90.3228, 89.0671, 91.1453, 89.4397, 89.175,
            86.9302, 87.6752, 86.9596, 89.4299, 89.3221, 88.7241, 87.4497, 87.2634,
            89.4985, 87.9006, 89.126,  90.7043, 92.9001, 92.9784, 91.8021, 92.6647});
  const Numbers soo_highs = {127.0090, 127.6159, 126.5911, 127.3472, 128.1730, 128.4317,
                             127.3671, 126.4220, 126.8995, 126.8498, 125.6460, 125.7156,
                             127.1582, 127.7154, 127.6855, 128.2228, 128.2725, 128.0934,
                             128.2725, 127.7353, 128.7700, 129.2873, 130.0633, 129.1182};
  const Numbers soo_lows = {125.3574, 126.1633, 124.9296, 126.0937, 126.8199, 126.4817,
                            126.0340, 124.8301, 126.3921, 125.7156, 124.5615, 124.5715,
                            125.0689, 126.8597, 126.6309, 126.8001, 126.7105, 126.8001,
                            126.1335, 125.9245, 126.9891, 127.8148, 128.4715, 128.0641};
  Numbers soo_closes(soo_lows.begin(), soo_lows.begin() + 13);  // the sheet has none before
  for (const double close : {127.2876, 127.1781, 128.0138, 127.1085, 127.7253, 127.0587, 127.3273,
                             128.7103, 127.8745, 128.5809, 128.6008}) {
    soo_closes.push_back(close);
  }
  const BarArrays ranged = Bars(soo_closes, soo_highs, soo_lows);
  const auto bands = [&](std::size_t line, const Numbers& values) {
    return Published{"cs-bbands.xls", "bollinger", {20, 2}, line, banded, 19, values, 1e-4};
  };
  // The smoothed %K of the slow stochastic is the %D of the fast one.
  const Numbers smoothed = {75.7497, 74.2072, 78.9201, 70.6940, 73.6004,
                            79.2117, 81.0719, 80.5807, 72.1928};
  return {
      bands(0, {91.291862, 91.949268, 92.612595, 92.9342, 93.31195}),
      bands(1, {88.70794, 89.04516, 89.239745, 89.390705, 89.5078}),
      bands(2, {86.124018, 86.141052, 85.866895, 85.84721, 85.70365}),
      {"cs-soo.xls", "stochastic", {14, 3, 3}, 0, ranged, 15, smoothed, 1e-3},
      {"cs-soo.xls", "stochastic", {14, 1, 3}, 1, ranged, 15, smoothed, 1e-3},
  };
}

std::vector<Published> OtherTables() {
  const BarArrays apple =
      Bars({459.99, 448.85, 446.06, 450.81, 442.8,  448.97, 444.57, 441.4,  430.47, 420.05,
            431.14, 425.66, 430.58, 431.72, 437.87, 428.43, 428.35, 432.5,  443.66, 455.72,
            454.49, 452.08, 452.73, 461.91, 463.58, 461.14, 452.08, 442.66, 428.91, 429.79,
            431.99, 427.72, 423.2,  426.21, 426.98, 435.69, 434.33, 429.8,  419.85, 426.24});
  // The prices of ChartSchool's cs-adx.xls to the cent.
  const BarArrays moved =
      Bars({29.87, 30.24, 30.10, 28.90, 28.92, 28.48, 28.56, 27.56, 28.47, 28.28,
            27.49, 27.23, 26.35, 26.33, 27.03, 26.22, 26.01, 25.46, 27.03, 27.45,
            28.36, 28.43, 27.95, 29.01, 29.38, 29.36, 28.91, 30.61, 30.05},
           {30.20, 30.28, 30.45, 29.35, 29.35, 29.29, 28.83, 28.73, 28.67, 28.85,
            28.64, 27.68, 27.21, 26.87, 27.41, 26.94, 26.52, 26.52, 27.09, 27.69,
            28.45, 28.53, 28.67, 29.01, 29.87, 29.80, 29.75, 30.65, 30.60},
           {29.41, 29.32, 29.96, 28.74, 28.56, 28.41, 28.08, 27.43, 27.66, 27.83,
            27.40, 27.09, 26.18, 26.13, 26.63, 26.13, 25.43, 25.35, 25.88, 26.96,
            27.14, 28.01, 27.88, 27.99, 28.76, 29.14, 28.71, 28.93, 30.03});
  const auto macd = [&](std::size_t line, int first, const Numbers& values) {
    return Published{"Samir Khan, How to Calculate MACD in Excel, investexcel.net",
                     "macd",
                     {12, 26, 9},
                     line,
                     apple,
                     first,
                     values,
                     1e-5};
  };
  return {
      macd(0, 25,
           {8.275269504, 7.703378381, 6.416074757, 4.237519783, 2.552583325, 1.37888572,
            0.102981491, -1.258401953, -2.07055819, -2.621842328, -2.32906674, -2.181632115}),
      macd(1, 33, {3.037525869, 1.905652229, 1.058708435, 0.410640325, -0.152012994, -0.790034732}),
      macd(2, 33, {-5.108084059, -4.527494558, -3.387775176, -2.59227244, -2.250613279}),
      {"Wilder's running sums, by a script", "adx", {14}, 0, moved, 27, {33.71, 32.26}, 6e-3},
      {"Wilder's running sums, by a script", "adx", {14}, 1, moved, 14, {6.66, 6.21, 5.71}, 6e-3},
  };
}

void ExpectPublished(const Published& table) {
  const IndicatorRun run = RunOf(table.key, table.parameters, table.bars);
  const Numbers& line = run.Line(table.line);
  const auto first = static_cast<std::size_t>(table.first);
  ASSERT_GE(line.size(), first + table.values.size());
  for (std::size_t i = 0; i < table.values.size(); ++i) {
    EXPECT_NEAR(line[first + i], table.values[i], table.rounding) << "bar " << first + i;
  }
  const bool excerpt = std::string_view(table.key) == "sar";
  for (std::size_t i = 0; i < first && !excerpt; ++i) {
    EXPECT_TRUE(std::isnan(line[i])) << "bar " << i;
  }
}

TEST(Indicators, AgreeWithPublishedTables) {
  for (const auto& tables : {AchelisTables(), ChartSchoolTables(), OtherTables()}) {
    for (const Published& table : tables) {
      SCOPED_TRACE(std::string(table.source) + ", " + table.key + ", line " +
                   std::to_string(table.line));
      ExpectPublished(table);
    }
  }
}

// The same prices upside down are the same rise and fall.
TEST(Indicators, TreatBothSidesAlike) {
  constexpr float kTop = 4096;
  std::mt19937 random(22);
  std::uniform_int_distribution<> step(-40, 40);
  ParabolicSar sar(0.02, 0.2);
  ParabolicSar mirrored(0.02, 0.2);
  DirectionalMovement movement(14);
  DirectionalMovement opposite(14);
  float price = kTop / 2;
  for (int i = 0; i < 500; ++i) {
    Bar bar;
    price += static_cast<float>(step(random));
    bar.high = price + static_cast<float>(step(random) + 41);
    bar.low = price;
    Bar other;
    other.high = kTop - bar.low;
    other.low = kTop - bar.high;
    other.close = kTop - (bar.close = bar.low);
    const IndicatorLines moved = movement(bar);
    const IndicatorLines against = opposite(other);
    const double value = sar(bar)[0];
    const double mirror = kTop - mirrored(other)[0];
    if (i == 0) continue;  // no position yet
    ASSERT_NEAR(value, mirror, 1e-6) << i;
    if (i < 30) continue;  // no average yet
    ASSERT_NEAR(moved[0], against[0], 1e-6) << i;
    ASSERT_NEAR(moved[1], against[2], 1e-6) << i;
  }
}

TEST(Indicators, KnowTheDayAndTheWeekBefore) {
  BarArrays bars = Bars({10, 11, 12, 13, 14}, {21, 20, 22, 23, 24}, {4, 5, 3, 2, 1});
  bars.dates = {20261119, 20261119, 20261120, 20261123, 20261124};  // Thursday to Tuesday
  const auto extent = [&](const char* key, std::size_t bar) {
    const IndicatorRun run = RunOf(key, {}, bars);
    return Numbers{run.Line(0)[bar], run.Line(1)[bar], run.Line(2)[bar]};
  };
  EXPECT_TRUE(std::isnan(extent("day", 1)[0]));
  EXPECT_THAT(extent("day", 2), testing::ElementsAre(21, 4, 11));
  EXPECT_THAT(extent("day", 4), testing::ElementsAre(23, 2, 13));
  EXPECT_TRUE(std::isnan(extent("week", 2)[0]));
  EXPECT_THAT(extent("week", 3), testing::ElementsAre(22, 3, 12));
  EXPECT_THAT(extent("week", 4), testing::ElementsAre(22, 3, 12));
  bars.volumes = {10, 30, 20, 10, 10};
  const Numbers vwap = RunOf("vwap", {}, bars).Line(0);
  EXPECT_NEAR(vwap[1], ((21 + 4 + 10) * 10 + (20 + 5 + 11) * 30) / (3 * 40.0), 1e-9);
  EXPECT_DOUBLE_EQ(vwap[2], (22 + 3 + 12) / 3.0) << "of its day alone";
}

TEST(Indicators, OfChannelsEncloseTheirMiddle) {
  const BarArrays bars = Bars({5, 7, 6, 9}, {6, 8, 7, 10}, {4, 5, 5, 7});
  const IndicatorRun donchian = RunOf("donchian", {3}, bars);
  EXPECT_THAT((Numbers{donchian.Line(0)[3], donchian.Line(1)[3], donchian.Line(2)[3]}),
              testing::ElementsAre(10, 7.5, 5));
  const IndicatorRun keltner = RunOf("keltner", {2, 3, 1.5}, bars);
  const double middle = RunOf("ema", {2}, bars).Line(0)[3];
  EXPECT_DOUBLE_EQ(middle, 8) << "two thirds of the way from 6 to 9";
  const double reach = 1.5 * RunOf("atr", {3}, bars).Line(0)[3];
  EXPECT_TRUE(std::isnan(keltner.Line(0)[1]));
  EXPECT_DOUBLE_EQ(keltner.Line(0)[3], middle + reach);
  EXPECT_DOUBLE_EQ(keltner.Line(2)[3], middle - reach);
}

// Prices that don't move, a close outside of its bar, no volume, a far higher price.
TEST(Indicators, StayFiniteForEverySeries) {
  const BarArrays flat = Bars(Numbers(120, 5.0));
  for (const IndicatorRow& row : IndicatorCatalogue()) {
    const IndicatorRun run = RunOf(row.key, UsualIndicator(row, 0).parameters, flat);
    const bool blank = std::string_view(row.key) == "vwap";
    EXPECT_EQ(std::isnan(run.Line(0).back()), blank) << row.key;
    EXPECT_FALSE(std::isinf(run.Line(0).back())) << row.key;
  }
  EXPECT_EQ(RunOf("rsi", {14}, flat).Line(0).back(), 50);
  EXPECT_DOUBLE_EQ(RunOf("sma", {3}, Bars({1e30, 1.25, 1.5, 1.75, 2, 2.25, 2.5})).Line(0)[6], 2.25);
  EXPECT_DOUBLE_EQ(RunOf("sma", {3}, Bars({67108864, 1.25, 1.5, 1.75})).Line(0)[3], 1.5);
}

void Truncate(BarArrays& bars, std::size_t count) {
  bars.dates.resize(count);
  bars.times.resize(count);
  for (const auto field : {&BarArrays::opens, &BarArrays::highs, &BarArrays::lows,
                           &BarArrays::closes, &BarArrays::volumes}) {
    (bars.*field).resize(count);
  }
}

// A replay goes on, steps back, jumps, and replaces its newest bar.
TEST(Indicators, FollowEveryStepAsIfComputedFromTheStart) {
  const BarArrays all = RandomSeries(2500, 20);
  for (const IndicatorRow& row : IndicatorCatalogue()) {
    const Numbers parameters = UsualIndicator(row, 0).parameters;
    IndicatorRun run(row.start(parameters), row.lines.size());
    BarArrays shown;
    for (std::size_t count : {1200, 1201, 1200, 1199, 1264, 1263, 1216, 1215, 300, 0, 2500, 1480,
                              1479, 1478, 1280, 1280}) {
      BarArrays next = all;
      Truncate(next, count);
      if (count % 2 == 1) next.closes.back() = next.highs.back();
      if (count == shown.dates.size()) next.volumes.back() += 700;  // the bar goes on
      run.Follow(next, SameBars(shown, next));
      shown = next;
      const IndicatorRun fresh = RunOf(row.key, parameters, shown);
      for (std::size_t line = 0; line < row.lines.size(); ++line) {
        ASSERT_THAT(run.Line(line),
                    testing::Pointwise(testing::NanSensitiveDoubleEq(), fresh.Line(line)))
            << row.key << " with " << count << " bars";
      }
    }
  }
}

TEST(Indicators, TakeOneStepForOneMoreBarAndFewForABarLess) {
  const BarArrays all = RandomSeries(32767, 21);
  BarArrays shown = all;
  Truncate(shown, 32000);
  long steps = 0;
  IndicatorRun run(
      [&steps](const Bar&) {
        ++steps;
        return Lines(0);
      },
      1);
  run.Follow(shown, 0);
  const auto steps_to = [&](std::size_t count) {
    BarArrays next = all;
    Truncate(next, count);
    const long before = steps;
    run.Follow(next, SameBars(shown, next));
    shown = next;
    return steps - before;
  };
  EXPECT_EQ(steps_to(32001), 1);
  for (std::size_t count = 32000; count > 31100; count -= 9) EXPECT_LE(steps_to(count), 64);
  EXPECT_EQ(steps_to(31150), 31150 - 31109);
}

TEST(IndicatorText, ReadsWhatItWrites) {
  std::vector<ChosenIndicator> all;
  for (const IndicatorRow& row : IndicatorCatalogue()) {
    all.push_back(UsualIndicator(row, static_cast<int>(all.size()) % 8));
    all.back().shown = all.size() % 2 == 0;
    all.back().height = 40;
  }
  const SavedIndicators read = ReadIndicators(IndicatorsText(all));
  EXPECT_EQ(read.indicators, all);
  EXPECT_THAT(read.problems, testing::IsEmpty());
  const IndicatorSets sets = {{"Trend \"one\"", all}, {"Nothing", {}}};
  EXPECT_EQ(ReadSets(SetsText(sets)), sets);
  EXPECT_EQ(IndicatorLabel(all.front()), "SMA 20");
}

TEST(IndicatorText, LeavesOutDamagedIndicatorsAndSaysSo) {
  const std::vector<std::pair<const char*, const char*>> cases = {
      {"", "can't be read"},
      {"{}", "can't be read"},
      {"[7]", "no key"},
      {R"([{"key": "foo", "parameters": []}])", "\"foo\" is not known"},
      {R"([{"key": "rsi"}])", "\"rsi\" is damaged"},
      {R"([{"key": "rsi", "parameters": "x"}])", "\"rsi\" is damaged"},
      {R"([{"key": "rsi", "parameters": [0]}])", "out of its range"},
      {R"([{"key": "rsi", "parameters": [14.5]}])", "out of its range"},
      {R"([{"key": "rsi", "parameters": [14, 3]}])", "out of its range"},
      {R"([{"key": "sar", "parameters": [1e300, 0.2]}])", "out of its range"}};
  for (const auto& [text, problem] : cases) {
    const SavedIndicators saved = ReadIndicators(text);
    EXPECT_THAT(saved.indicators, testing::IsEmpty()) << text;
    EXPECT_THAT(saved.problems, testing::ElementsAre(testing::HasSubstr(problem))) << text;
  }
  const SavedIndicators saved =
      ReadIndicators(R"([{"key": "obv", "parameters": [], "colour": 99, "height": 1e40}, 1])");
  ASSERT_EQ(saved.indicators.size(), 1U);
  EXPECT_EQ(saved.indicators[0], UsualIndicator(*FindIndicator("obv"), 0));
  const SavedIndicators many = ReadIndicators(
      IndicatorsText({kMostIndicators + 1, UsualIndicator(*FindIndicator("obv"), 0)}));
  EXPECT_EQ(many.indicators.size(), kMostIndicators);
  EXPECT_THAT(many.problems, testing::SizeIs(1));
}

}  // namespace
}  // namespace velumar
