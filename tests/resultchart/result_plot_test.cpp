#include "resultchart/result_plot.h"

#include <algorithm>

#include "charts/value_ticker.h"
#include "support/matchers.h"

namespace velumar {
namespace {

ChartPoints PointsOf(std::vector<double> values) {
  ChartPoints points;
  points.labels.assign(values.size(), "25-Jan-07 16:30");
  points.values = std::move(values);
  return points;
}

// The rows of pixels that show the series, which is green in light and shade.
std::vector<int> ColouredRows(ResultPlot& plot) {
  QImage picture(800, 500, QImage::Format_RGB32);
  picture.fill(Qt::white);
  {
    QCPPainter painter(&picture);
    plot.PaintTo(painter, picture.size());
  }
  std::vector<int> rows;
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) {
      const QColor colour = picture.pixelColor(x, y);
      if (colour.green() - colour.red() < 40) continue;
      rows.push_back(y);
      break;
    }
  }
  return rows;
}

TEST(ResultPlot, KeepsTheExtremesOfManyPointsInEveryType) {
  std::vector<double> values(100'000, 1000);
  values[31'415] = 1500;
  values[92'653] = -1200;
  ResultPlot plot;
  plot.SetPoints(PointsOf(std::move(values)));
  for (const ChartTypeName& type : kChartTypes) {
    plot.SetStyle({.type = type.type});
    const std::vector<int> rows = ColouredRows(plot);
    ASSERT_FALSE(rows.empty()) << type.text;
    // 2,700 of the 3,024 that the axis shows, on at least 300 pixels.
    EXPECT_GT(rows.back() - rows.front(), 250) << type.text;
  }
}

TEST(ResultPlot, ShowsASinglePointAndBarsFromZero) {
  ResultPlot plot;
  plot.SetPoints(PointsOf({500}));
  EXPECT_FALSE(ColouredRows(plot).empty());
  plot.SetPoints(PointsOf({20, 20, 20}));
  ResultPlot fresh;
  fresh.SetPoints(PointsOf({20, 20, 20}));
  EXPECT_EQ(ColouredRows(plot), ColouredRows(fresh)) << "the dot of the single point is gone";
  plot.SetPoints(PointsOf({20, 100}));
  plot.SetStyle({.type = ChartType::k2DBar});
  EXPECT_GT(ColouredRows(plot).size(), 350U) << "the bar of 100 fills the height";
}

TEST(ResultPlot, NeverShowsMoreThanThePointsOrFewerThanFive) {
  ResultPlot plot;
  plot.SetPoints(PointsOf(std::vector<double>(100, 1)));
  EXPECT_EQ(plot.Span(), (AxisSpan{-0.5, 99.5}));
  plot.ShowSpan({-50, 400});
  EXPECT_EQ(plot.Span(), plot.WholeSpan());
  plot.ShowSpan({90, 110});
  EXPECT_EQ(plot.Span(), (AxisSpan{79.5, 99.5}));
  plot.ShowSpan({40, 41});
  EXPECT_EQ(plot.Span().Size(), 5);
}

TEST(ThinnedBars, KeepTheValueFarthestFromZeroAndDoNotChangeWhileScrolling) {
  std::vector<double> values(1000, 10);
  values[333] = 50;
  const auto bars = ThinnedBars(values, {-0.5, 999.5}, 7);
  EXPECT_EQ(bars.size(), 143U);
  EXPECT_THAT(bars, Contains(ThinnedBar{332, 50}));
  EXPECT_THAT(ThinnedBars(values, {330, 340}, 7), Contains(ThinnedBar{332, 50}));
  EXPECT_EQ(ThinnedBars(values, {10, 20}, 1).size(), 13U) << "and one more at each end";
  EXPECT_TRUE(ThinnedBars({}, {-0.5, 0.5}, 3).empty());
}

TEST(FittingValues, StartAtZeroUnlessNoDifferenceWouldBeVisible) {
  const auto fit = [](std::vector<double> values, bool on_base) {
    return FittingValues(values, {-0.5, static_cast<double>(values.size()) - 0.5}, on_base);
  };
  EXPECT_GT(fit({990, 1000}, true).lower, 900);
  EXPECT_LT(fit({-990, -1000}, true).upper, -900);
  EXPECT_EQ(fit({-50, 50}, true), (ValueSpan{-56, 56}));
  EXPECT_GT(fit({20, 100}, false).lower, 0);
  EXPECT_LT(fit({500}, false).lower, 500);
  EXPECT_EQ(fit({}, true), (ValueSpan{0, 1}));
}

// The values that an axis of 420 pixels shows with one value for 60 pixels.
QVector<double> Ticks(double lower, double upper, QCPAxis::ScaleType scale) {
  QCustomPlot plot;
  plot.setViewport(QRect(0, 0, 600, 500));
  plot.axisRect()->setOuterRect(QRect(0, 0, 600, 420));
  plot.axisRect()->setMargins({});
  plot.axisRect()->setAutoMargins(QCP::msNone);
  plot.axisRect()->update(QCPLayoutElement::upLayout);
  plot.yAxis->setScaleType(scale);
  ValueTicker ticker(*plot.yAxis, 60, [](double, double) { return QString(); });
  QVector<double> ticks;
  ticker.generate({lower, upper}, {}, u'f', 2, ticks, nullptr, nullptr);
  return ticks;
}

TEST(ValueTicker, ShowsRoundValues) {
  EXPECT_THAT(Ticks(103.2, 129.9, QCPAxis::stLinear), ElementsAre(105, 110, 115, 120, 125));
  EXPECT_THAT(Ticks(0.9, 120, QCPAxis::stLogarithmic), ElementsAre(1, 2, 5, 10, 20, 50, 100));
  EXPECT_THAT(Ticks(2, 3e6, QCPAxis::stLogarithmic),
              ElementsAre(10, 100, 1000, 10000, 100000, 1000000));
  EXPECT_THAT(Ticks(50, 80, QCPAxis::stLogarithmic), ElementsAre(50, 55, 60, 65, 70, 75, 80));
}

}  // namespace
}  // namespace velumar
