#include <algorithm>
#include <chrono>
#include <cmath>
#include <functional>
#include <numeric>
#include <random>

#include "charthost/bar_columns.h"
#include "charthost/bar_text.h"
#include "charthost/chart_model.h"
#include "charthost/date_ticks.h"
#include "charthost/made_series.h"
#include "charthost/view_window.h"
#include "support/matchers.h"

namespace velumar {
namespace {

// Bars of one day without volume whose four prices are these closes.
BarSeries SeriesOf(std::vector<float> closes) {
  BarSeries series;
  const std::size_t count = closes.size();
  series.dates.assign(count, 20150608);
  series.times.assign(count, 0);
  series.volumes.assign(count, 0);
  series.opens = series.highs = series.lows = series.closes = std::move(closes);
  DescribeSeries(series);
  return series;
}

TEST(BarColumns, HoldTheExtremesAndTheVolumeOfTheirBars) {
  BarSeries series = RandomSeries(1000, 3);
  const double sum = std::accumulate(series.volumes.begin(), series.volumes.end(), 0.0);
  for (const int per_column : {1, 2, 7, 64}) {
    std::vector<BarColumn> columns;
    BuildColumns(series, 0, 999, per_column, columns);
    ASSERT_EQ(static_cast<int>(columns.size()), (1000 + per_column - 1) / per_column);
    double volume = 0;
    for (const BarColumn& column : columns) {
      for (int bar = column.last_bar / per_column * per_column; bar <= column.last_bar; ++bar) {
        EXPECT_LE(column.low, std::min(series.lows[bar], series.closes[bar]));
        EXPECT_GE(column.high, std::max(series.highs[bar], series.closes[bar]));
      }
      EXPECT_EQ(column.close, series.closes[column.last_bar]);
      const int first_bar = column.last_bar / per_column * per_column;
      EXPECT_DOUBLE_EQ(column.place, (first_bar + column.last_bar) / 2.0);
      volume += column.volume;
    }
    EXPECT_DOUBLE_EQ(volume, sum);
  }
  series.opens.assign(series.opens.size(), 0);  // a series without opens
  DescribeSeries(series);
  std::vector<BarColumn> columns;
  BuildColumns(series, 0, 9, 1, columns);
  for (const BarColumn& column : columns) EXPECT_EQ(column.open, column.close);
}

// A chart that scrolls, or gets one more bar, must not flicker.
TEST(BarColumns, StayTheSameWhileTheChartScrolls) {
  const BarSeries series = RandomSeries(500, 4);
  std::vector<BarColumn> columns;
  std::vector<BarColumn> scrolled;
  BuildColumns(series, 100, 400, 6, columns);
  BuildColumns(series, 103, 404, 6, scrolled);
  for (std::size_t i = 1; i + 1 < columns.size(); ++i) {
    const BarColumn& same = scrolled.at(i - 1);
    EXPECT_EQ(same.place, columns[i].place);
    EXPECT_EQ(same.high, columns[i].high);
    EXPECT_EQ(same.volume, columns[i].volume);
  }
}

TEST(ChartModel, PaintsNoMoreColumnsThanFitTheScreen) {
  ChartModel model;
  model.ShowSeries(RandomSeries(32767, 5));
  model.Window().ShowAll();
  for (const double width : {300.0, 3840.0}) {
    model.Layout(width);
    EXPECT_LE(static_cast<double>(model.Columns().size()), width + 2);
    EXPECT_GT(static_cast<double>(model.Columns().size()), width / 8);
    double highest = 0;
    for (const BarColumn& column : model.Columns()) highest = std::max(highest, column.volume);
    EXPECT_EQ(model.HighestVolume(), highest);
  }
}

TEST(ChartModel, ShowsAllPricesOfEverySeries) {
  const std::vector<std::pair<std::vector<float>, bool>> cases = {
      {{7, 7, 7}, true},          {{0.0001F}, true}, {{0, 5, 9}, false},
      {{-30, -37.6F, 12}, false}, {{-7, -7}, false}, {{1e37F, 3e37F}, true}};
  for (const auto& [closes, logarithmic_possible] : cases) {
    ChartModel model;
    model.SetOptions({.scale = PriceScale::kLogarithmic});
    model.ShowSeries(SeriesOf(closes));
    model.Layout(800);
    EXPECT_EQ(model.Logarithmic(), logarithmic_possible) << closes.front();
    for (const float close : closes) {
      EXPECT_GT(close, model.Prices().lower);
      EXPECT_LT(close, model.Prices().upper);
      EXPECT_GT(model.Prices().upper - model.Prices().lower, std::abs(close) * 0.002);
    }
    EXPECT_FALSE(model.ShowsVolume());
  }
}

// Worked by hand: the first bar opens at (10 + 11) / 2, each later one at the middle of the one
// before.
TEST(HeikinAshi, AveragesEachBarWithTheOneBefore) {
  BarSeries series = SeriesOf({11, 12, 10});
  series.opens = {10, 11, 12};
  series.highs = {12, 13, 12.5F};
  series.lows = {9, 11, 9.5F};
  series.has_opens = true;
  HeikinAshi bars;
  const BarSeries& averaged = bars.Of(series);
  const std::vector<float> opens = {10.5F, 10.5F, 11.125F};
  const std::vector<float> closes = {10.5F, 11.75F, 11};
  EXPECT_EQ(averaged.opens, opens);
  EXPECT_EQ(averaged.closes, closes);
  EXPECT_EQ(averaged.highs, series.highs);
  EXPECT_EQ(averaged.lows, (std::vector<float>{9, 10.5F, 9.5F}));
  series.closes[2] = 14;
  bars.Forget(2);
  EXPECT_EQ(bars.Of(series).closes, (std::vector<float>{10.5F, 11.75F, 12}));
  ChartModel model;
  model.SetOptions({.style = ChartStyle::kHeikinAshi});
  for (const float close : {14.0F, 10.0F}) {
    series.closes[2] = close;
    model.UpdateSeries(series);
    model.Layout(800);
    EXPECT_EQ(model.Columns().back().close, (34 + close) / 4) << "of the newest bar as it is";
  }
}

// Lines near the prices are shown whole, and one far away doesn't squeeze the bars.
TEST(ChartModel, MakesRoomForIndicatorsNearThePrices) {
  std::vector<float> closes(400, 100);
  for (int i = 200; i < 400; ++i) closes[i] = i % 2 == 0 ? 200.0F : 204.0F;
  ChartModel model;
  const auto range_with = [&](int period) {
    model.SetOptions({.indicators = {{.key = "sma", .parameters = {double(period)}}}});
    model.ShowSeries(SeriesOf(closes));
    model.Window().ShowBetween(380, 399);
    model.Layout(800);
    return model.Prices();
  };
  EXPECT_GT(range_with(2).lower, 199);
  EXPECT_LT(range_with(390).lower, 199.1);
  EXPECT_GT(range_with(390).lower, 198);
  model.SetLevels({199.3, 204.7, 300});  // average prices of held sides
  const ValueRange with_levels = range_with(2);
  EXPECT_LE(with_levels.lower, 199.3);
  EXPECT_GE(with_levels.upper, 204.7);
  EXPECT_LT(with_levels.upper, 206) << "one is far away";
  model.SetOptions({.positions = false, .indicators = {}});
  model.Layout(800);
  EXPECT_GT(model.Prices().lower, with_levels.lower) << "they are hidden";
}

TEST(PriceText, ShowsNumbersAsTradersReadThem) {
  EXPECT_EQ(PriceText(-0.0001, 2), "0.00");
  EXPECT_EQ(VolumeText(-1000), "-1,000");
  EXPECT_EQ(VolumeText(11.2976F), "11.298");
  EXPECT_EQ(ChangeText(99.5, 100, 2), "-0.50 (-0.50%)");
  EXPECT_EQ(ChangeText(3, 0, 2), "+3.00");
  EXPECT_EQ(ChangeText(-36, -40, 2), "+4.00 (+10.00%)");
  EXPECT_EQ(IndicatorValueText(0.1234, ValueFormat::kDifference, 2), "0.123");
}

TEST(PriceText, ShortensVolumesToFourCharacters) {
  const std::vector<std::pair<double, const char*>> cases = {
      {0, "0"},        {0.5, "0.50"},    {999.6, "1K"},      {1200, "1.2K"},   {99999, "100K"},
      {9.96e6, "10M"}, {2.14e9, "2.1B"}, {123.4e12, "123T"}, {-1200, "-1.2K"}, {-10.3, "-10"}};
  for (const auto& [value, text] : cases) EXPECT_EQ(ShortVolumeText(value), text) << value;
}

TEST(BarSeries, IsShownWithTheDecimalsOfItsQuotes) {
  EXPECT_EQ(SeriesOf({3600, 3617}).decimals, 2);
  EXPECT_EQ(SeriesOf({1.07214F, 1.0726F}).decimals, 5);
  EXPECT_EQ(SeriesOf({76.24992F}).decimals, 4);  // a float holds no more digits
}

TEST(Readout, LeavesOutWhatTheSeriesLacks) {
  BarSeries series = SeriesOf({10, 12.5F});
  const auto line_of = [&](int bar) {
    std::string line;
    for (const ReadoutPart& part : BarReadout(series, bar)) {
      line += part.label + "=" + part.value + ";";
    }
    return line;
  };
  EXPECT_EQ(line_of(0), "=Mon 8 Jun 2015;O=10.00;H=10.00;L=10.00;C=10.00;");
  series.opens = {0, 0};
  series.times = {93000, 93505};
  series.volumes = {5, 1e6F};
  DescribeSeries(series);
  EXPECT_EQ(line_of(1),
            "=Mon 8 Jun 2015;=09:35:05;H=12.50;L=12.50;C=12.50;Vol=1,000,000;"
            "Change=+2.50 (+25.00%);");
  EXPECT_EQ(BarReadout(series, 1).back().tone, ReadoutTone::kUp);
}

ViewWindow Opened(int bars) {
  ViewWindow window;
  window.Reset(bars);
  return window;
}

double RoomAfter(const ViewWindow& window, int bars) { return window.Last() - (bars - 1); }

TEST(ViewWindow, OpensAtTheNewestBar) {
  for (const int bars : {1, 5, 159, 160, 161, 32767}) {
    ViewWindow window = Opened(bars + 1);
    window.SetBars(0);
    EXPECT_GT(window.FirstBar(), window.LastBar()) << bars;
    window.SetBars(bars);
    EXPECT_TRUE(window.Shows(bars - 1)) << bars;
    EXPECT_DOUBLE_EQ(window.Span(), ViewWindow::kUsualSpan) << bars;
    EXPECT_GE(RoomAfter(window, bars), 1.5) << bars;
    if (bars < 150) {
      EXPECT_DOUBLE_EQ(window.First(), -1) << "few bars begin at the left";
    }
  }
}

TEST(ViewWindow, StaysWhileTheNewestBarIsInViewAndScrollsWhenItWouldLeave) {
  ViewWindow window = Opened(500);
  int moves = 0;
  for (int bars = 501; bars <= 600; ++bars) {
    const double before = window.First();
    window.SetBars(bars);
    ASSERT_TRUE(window.Shows(bars - 1));
    ASSERT_DOUBLE_EQ(window.Span(), ViewWindow::kUsualSpan);
    if (window.First() != before) {
      ++moves;
      EXPECT_GE(RoomAfter(window, bars), 1.5);
    }
  }
  EXPECT_GT(moves, 5);
  EXPECT_LT(moves, 25);
}

TEST(ViewWindow, KeepsItsPlaceInThePast) {
  ViewWindow window = Opened(1000);
  window.Pan(-400);
  const double place = window.First();
  for (const int bars : {1001, 1030, 1000, 700}) {
    window.SetBars(bars);
    EXPECT_DOUBLE_EQ(window.First(), place) << bars;
  }
  // Now everything that it shows is taken away.
  window.SetBars(300);
  EXPECT_TRUE(window.Shows(299));
}

TEST(ViewWindow, ZoomsAroundTheNewestBarOrTheMiddle) {
  ViewWindow window = Opened(1000);
  window.Pan(-400);
  const double middle = (window.First() + window.Last()) / 2;
  window.Zoom(0.5);
  EXPECT_DOUBLE_EQ(window.Span(), ViewWindow::kUsualSpan / 2);
  EXPECT_NEAR((window.First() + window.Last()) / 2, middle, 1e-9);
  window.Reset(1000);
  window.Zoom(1e-6);
  EXPECT_TRUE(window.Shows(999));
}

TEST(ViewWindow, AlwaysShowsBarsWithinTheBoundsOfItsSpan) {
  std::mt19937 random(7);
  const auto between = [&](double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(random);
  };
  ViewWindow window = Opened(300);
  const std::function<void()> kActs[] = {
      [&] { window.Pan(between(-500, 500)); },
      [&] { window.Zoom(between(0.2, 5)); },
      [&] { window.ShowBetween(between(-300, 900), between(-300, 900)); },
      [&] { window.SetBars(1 + static_cast<int>(random() % 600)); },
      [&] { window.ShowOldest(); },
      [&] { window.ShowNewest(); },
      [&] { window.ShowAll(); }};
  for (int i = 0; i < 20000; ++i) {
    kActs[random() % std::size(kActs)]();
    ASSERT_LE(window.FirstBar(), window.LastBar()) << i;
    ASSERT_GE(window.Span(), ViewWindow::kSmallestSpan - 1e-9) << i;
    ASSERT_LE(window.Span(), 1000) << i;
  }
}

// Bars from 9:30 to 16:00 of the weekdays from January on, or one a day if `minutes` is 0.
BarSeries Weekdays(int first_year, int days, int minutes) {
  BarSeries series;
  series.has_times = minutes > 0;
  for (std::chrono::sys_days day = std::chrono::year(first_year) / 1 / 1; days > 0;
       day += std::chrono::days(1)) {
    if (std::chrono::weekday(day).iso_encoding() > 5) continue;
    --days;
    const std::chrono::year_month_day date = day;
    const unsigned month_day = unsigned(date.month()) * 100 + unsigned(date.day());
    for (int minute = 570; minute<960; minute += minutes> 0 ? minutes : 390) {
      series.dates.push_back(int(date.year()) * 10000 + static_cast<int>(month_day));
      series.times.push_back(minute / 60 * 10000 + minute % 60 * 100);
    }
  }
  return series;
}

std::string Texts(const std::vector<DateTick>& ticks) {
  std::string texts;
  for (const DateTick& tick : ticks) {
    texts += (texts.empty() ? "" : " | ") + tick.text + (tick.strong ? "*" : "");
  }
  return texts;
}

TEST(DateTicks, NameYearsMonthsDaysOrTimesByZoom) {
  const BarSeries daily = Weekdays(2003, 3000, 0);
  const BarSeries minutes = Weekdays(2004, 300, 5);
  const std::tuple<const BarSeries&, AxisStretch, const char*> cases[] = {
      {daily,
       {0, 2999, 0.3},
       "2003 | 2004 | 2005 | 2006 | 2007 | 2008 | 2009 | 2010 | 2011 | 2012 | 2013 | 2014"},
      {daily, {230, 560, 2}, "2004* | Apr | Jul | Oct | 2005*"},
      {daily, {350, 390, 20}, "10 May 2004 | 17 | 24 | 31 | Jun* | 14 | 21 | 28"},
      {daily, {258, 268, 80}, "29 | 30 | 31 | 2004* | 2 | 5 | 6 | 7 | 8 | 9 | 12"},
      {minutes, {100, 600, 2}, "5 Jan 2004 | 6 | 7 | 8 | 9 | 12"},
      {minutes, {150, 240, 8}, "5 Jan* | 11:00 | 12:00 | 13:00 | 14:00 | 15:00 | 6 Jan*"},
  };
  for (const auto& [series, stretch, texts] : cases) {
    EXPECT_EQ(Texts(DateTicks(series, stretch, 64)), texts);
  }
}

TEST(DateTicks, KeepTheirDistanceAtEveryZoom) {
  const BarSeries daily = Weekdays(2000, 5000, 0);
  const BarSeries minutes = Weekdays(2004, 100, 15);
  for (const BarSeries* series : {&daily, &minutes}) {
    for (double pixels = 0.05; pixels < 150; pixels *= 1.3) {
      const int last = std::min(series->size() - 1, 700 + static_cast<int>(1200 / pixels));
      const auto ticks = DateTicks(*series, {700, last, pixels}, 64);
      const bool wide = last - 700 > 200 / pixels && pixels < 60;
      EXPECT_TRUE(!wide || !ticks.empty()) << pixels;
      for (std::size_t i = 0; i < ticks.size(); ++i) {
        EXPECT_TRUE(ticks[i].bar >= 700 && ticks[i].bar <= last);
        EXPECT_FALSE(ticks[i].text.empty());
        const double distance = i == 0 ? 64 : (ticks[i].bar - ticks[i - 1].bar) * pixels;
        EXPECT_GE(distance, 64) << pixels;
      }
    }
  }
}

TEST(DateTicks, SurviveDamagedDatesAndEmptyStretches) {
  BarSeries series;
  series.dates = {0, -5, 99999999, 20041399, 20040101, 20040101};
  series.times = {0, -1, 999999, 0, 0, 0};
  series.has_times = true;
  EXPECT_FALSE(DateTicks(series, {0, 5, 200}, 64).empty());
  EXPECT_TRUE(DateTicks(series, {3, 2, 10}, 64).empty());
}

}  // namespace
}  // namespace velumar
