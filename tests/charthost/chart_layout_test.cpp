#include "charthost/chart_layout.h"

#include <gtest/gtest.h>

#include "charthost/bar_series.h"
#include "charthost/measure.h"

namespace velumar {
namespace {

TEST(ChartLayout, ReadsWhatItWroteAndLeavesOutTheRest) {
  const ChartLayout layout = {
      Tiling::kFour,
      {{"", -1, {{5, {Frame::Unit::kMinutes, 60}}, {-1, {Frame::Unit::kWeek}}}},
       {"S \"P\"", 5, {{5, {}}}}}};
  EXPECT_EQ(ReadLayout(LayoutText(layout)), layout);
  for (const char* text : {"", "[]", "{\"charts\": 5}", "{\"charts\": [7]}", "{\"tiling\": 3}",
                           "{\"charts\": [{\"frames\": [1]}]}"}) {
    EXPECT_EQ(ReadLayout(text), ChartLayout()) << text;
  }
  const ChartLayout odd = ReadLayout(
      R"({"tiling": "stacked", "charts": [{"frames": ["5=61", "x=day", "=", "0=day", "5"]}]})");
  EXPECT_EQ(odd.tiling, Tiling::kStacked);
  EXPECT_EQ(odd.charts, std::vector<LaidChart>({{"", -1, {{0, {Frame::Unit::kDay}}}}}));
  ChartLayout many;
  many.charts.resize(ChartLayout::kMostCharts + 1);
  EXPECT_EQ(ReadLayout(LayoutText(many)).charts.size(), ChartLayout::kMostCharts);
}

// Two days of three bars; the bars of another chart begin where those of this one do, or between.
TEST(BarAtMoment, FindsTheBarThatIncludesTheMoment) {
  BarSeries minutes;
  minutes.dates = {20260105, 20260105, 20260105, 20260107, 20260107, 20260107};
  minutes.times = {93000, 94500, 100000, 93000, 94500, 100000};
  minutes.has_times = true;
  BarSeries days;
  days.dates = {20260105, 20260107};
  days.times = {0, 0};
  struct Case {
    const BarSeries& series;
    BarMoment moment;
    std::optional<int> bar;
  };
  for (const Case& one : {Case{minutes, {20260105, 94500}, 1}, Case{minutes, {20260105, 95959}, 1},
                          Case{minutes, {20260107, 90000}, 2}, Case{minutes, {20260107, {}}, 3},
                          Case{minutes, {20260106, {}}, 2}, Case{minutes, {20260105, 90000}, {}},
                          Case{minutes, {20260109, {}}, 5}, Case{days, {20260107, 93000}, 1},
                          Case{days, {20260106, 93000}, 0}, Case{days, {20260104, {}}, {}},
                          Case{BarSeries(), {20260105, {}}, {}}}) {
    EXPECT_EQ(BarAtMoment(one.series, one.moment), one.bar)
        << one.moment.date << " " << one.moment.time.value_or(-1);
  }
}

TEST(DistanceText, CountsBarsDaysAndPoints) {
  BarSeries series;
  series.dates = {20260105, 20260106, 20260202, 20260230};
  EXPECT_EQ(DistanceText(series, {0, 50}, {2, 51.25}), "2 bars, 28 days, +1.25 (+2.50%)");
  EXPECT_EQ(DistanceText(series, {1, 51.25}, {0, 50}), "-1 bar, -1 day, -1.25 (-2.44%)");
  EXPECT_EQ(DistanceText(series, {0, 0}, {3, 1}), "3 bars, +1.00");
  EXPECT_EQ(DistanceText(series, {0, 0}, {3, 1.5}, {2.5, 1000}),
            "3 bars, +1.50, +3,750.00 for quantity 2.5");
  EXPECT_EQ(DistanceText(series, {3, 2}, {3, 0}, {1, 0.5}),
            "0 bars, -2.00 (-100.00%), -1.00 for quantity 1");
  EXPECT_EQ(DistanceText(series, {3, 50.004}, {3, 51.006}, {1, 1000}),
            "0 bars, +1.01 (+2.02%), +1,010.00 for quantity 1");
}

}  // namespace
}  // namespace velumar
