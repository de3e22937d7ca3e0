#include <algorithm>
#include <cmath>
#include <numeric>
#include <random>

#include "charthost/bar_columns.h"
#include "charthost/bar_text.h"
#include "charthost/chart_model.h"

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

// A walk whose bars keep the rules of prices, with a contradiction now and then.
BarSeries RandomSeries(int count, unsigned seed) {
  std::mt19937 random(seed);
  std::normal_distribution<float> move(0, 1);
  BarSeries series;
  float price = 100;
  for (int i = 0; i < count; ++i) {
    const float open = price;
    price = std::max(5.0F, price + move(random));
    series.dates.push_back(20000101 + i);
    series.times.push_back(0);
    series.opens.push_back(random() % 50 == 0 ? open + 20 : open);
    series.highs.push_back(std::max(open, price) + std::abs(move(random)));
    series.lows.push_back(std::min(open, price) - std::abs(move(random)));
    series.closes.push_back(random() % 50 == 0 ? price + 15 : price);
    series.volumes.push_back(static_cast<float>(random() % 1000));
  }
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
  }
}

TEST(ChartModel, ShowsAllPricesOfEverySeries) {
  const std::vector<std::pair<std::vector<float>, bool>> cases = {{{7, 7, 7}, true},
                                                                  {{0.0001F}, true},
                                                                  {{0, 5, 9}, false},
                                                                  {{-30, -37.6F, 12}, false},
                                                                  {{1e37F, 3e37F}, true}};
  for (const auto& [closes, logarithmic_possible] : cases) {
    ChartModel model;
    model.SetOptions({.logarithmic = true});
    model.ShowSeries(SeriesOf(closes));
    model.Layout(800);
    EXPECT_EQ(model.Logarithmic(), logarithmic_possible) << closes.front();
    for (const float close : closes) {
      EXPECT_GT(close, model.Prices().lower);
      EXPECT_LT(close, model.Prices().upper);
    }
    EXPECT_FALSE(model.ShowsVolume());
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
}

TEST(PriceText, ShowsNumbersAsTradersReadThem) {
  EXPECT_EQ(PriceText(-0.0001, 2), "0.00");
  EXPECT_EQ(VolumeText(-1000), "-1,000");
  EXPECT_EQ(VolumeText(11.2976F), "11.298");
  EXPECT_EQ(ChangeText(99.5, 100, 2), "-0.50 (-0.50%)");
  EXPECT_EQ(ChangeText(3, 0, 2), "+3.00");
}

TEST(PriceText, ShortensVolumesToFourCharacters) {
  const std::vector<std::pair<double, const char*>> cases = {
      {0, "0"},        {0.5, "0.50"},  {950, "950"},    {999.6, "1K"},    {1200, "1.2K"},
      {99999, "100K"}, {999999, "1M"}, {9.96e6, "10M"}, {2.14e9, "2.1B"}, {123.4e12, "123T"}};
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

}  // namespace
}  // namespace velumar
