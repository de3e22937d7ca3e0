#include "charthost/view/chart_pane.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>
#include <QLabel>
#include <QTest>

#include "charthost/chart_windows.h"
#include "charthost/view/chart_colors.h"
#include "charthost/view/chart_plot.h"
#include "charthost/view/readout_bar.h"

namespace velumar {
namespace {

int Pixels(const QImage& image, const QColor& color) {
  int count = 0;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) count += image.pixelColor(x, y) == color ? 1 : 0;
  }
  return count;
}

class ChartPaneTest : public testing::Test {
 protected:
  std::unique_ptr<ChartPane> Open(const std::string& symbol, ChartOptions options = {}) {
    auto pane = std::make_unique<ChartPane>(
        program_.source, SeriesRequest{program_.folder, symbol, std::nullopt}, options, nullptr);
    pane->resize(900, 600);
    pane->show();
    return pane;
  }
  static QImage Picture(ChartPane& pane) {
    pane.Plot().replot();
    return pane.Plot().grab().toImage();
  }

  ChartProgram program_;
};

TEST_F(ChartPaneTest, PaintsEachStyleWithVolumeAndAverages) {
  const ChartColors& colors = ColorsFor(QApplication::palette());
  ChartOptions bare;
  bare.volume = false;
  for (AverageOptions& average : bare.averages) average.shown = false;
  const auto pane = Open("SCB", bare);
  const QImage candles = Picture(*pane);
  EXPECT_GT(Pixels(candles, colors.up), 200);
  EXPECT_GT(Pixels(candles, colors.down), 200);
  EXPECT_EQ(Pixels(candles, colors.up_volume), 0);
  EXPECT_EQ(Pixels(candles, colors.averages[1]), 0);

  ChartOptions bars = bare;
  bars.style = ChartStyle::kBars;
  pane->SetOptions(bars);
  const QImage ticks = Picture(*pane);
  EXPECT_GT(Pixels(ticks, colors.up), 100);
  EXPECT_LT(Pixels(ticks, colors.up), Pixels(candles, colors.up));

  ChartOptions full;
  full.style = ChartStyle::kLine;
  full.logarithmic = true;
  pane->SetOptions(full);
  const QImage line = Picture(*pane);
  EXPECT_GT(Pixels(line, colors.line), 50);
  EXPECT_GT(Pixels(line, colors.up_volume), 200);
  EXPECT_GT(Pixels(line, colors.averages[1]), 50);
}

TEST_F(ChartPaneTest, ZoomsAndPansByKeysWheelAndMouse) {
  const auto pane = Open("SCB");
  Picture(*pane);
  const auto first = [&] { return pane->Window().First(); };
  const auto span = [&] { return pane->Window().Span(); };
  const double usual = span();
  QTest::keyClick(&pane->Plot(), Qt::Key_Plus);
  EXPECT_LT(span(), usual);
  QTest::keyClick(&pane->Plot(), Qt::Key_Minus);
  EXPECT_NEAR(span(), usual, 1e-9);
  QTest::keyClick(&pane->Plot(), Qt::Key_Home);
  EXPECT_EQ(pane->Window().FirstBar(), 0);
  const double oldest = first();
  QTest::mousePress(&pane->Plot(), Qt::LeftButton, {}, {400, 200});
  QTest::mouseMove(&pane->Plot(), {300, 220});
  QTest::mouseRelease(&pane->Plot(), Qt::LeftButton, {}, {300, 220});
  EXPECT_GT(first(), oldest + 10);
  EXPECT_NEAR(span(), usual, 1e-9);
  Picture(*pane);
  QTest::mousePress(&pane->Plot(), Qt::RightButton, {}, {200, 200});
  QTest::mouseMove(&pane->Plot(), {400, 220});
  QTest::mouseRelease(&pane->Plot(), Qt::RightButton, {}, {400, 220});
  EXPECT_LT(span(), usual / 3);
  QTest::mouseDClick(&pane->Plot(), Qt::LeftButton, {}, {400, 220});
  EXPECT_NEAR(span(), usual, 1e-9);
  EXPECT_TRUE(pane->Window().Shows(299));
}

TEST_F(ChartPaneTest, SaysInTheChartWhatIsMissing) {
  const auto pane = Open("NONE");
  bool said = false;
  for (const QLabel* label : pane->findChildren<QLabel*>()) {
    said |= label->isVisible() && label->text().contains(QStringLiteral("no security \"NONE\""));
  }
  EXPECT_TRUE(said);
  Picture(*pane);
}

TEST(ReadoutBar, BreaksIntoRowsInsteadOfCutting) {
  ReadoutBar bar(nullptr);
  const std::vector<ReadoutItem> items(
      9, {QStringLiteral("Label"), QStringLiteral("123,456.78"), Qt::black, false});
  bar.SetItems(items);
  const int one_row = bar.heightForWidth(4000);
  EXPECT_GE(bar.heightForWidth(500), 2 * one_row - 10);
  EXPECT_GE(bar.heightForWidth(bar.minimumSizeHint().width()), 9 * (one_row - 8));
  bar.resize(500, 10);
  bar.show();
  EXPECT_EQ(bar.height(), bar.heightForWidth(500));
}

}  // namespace
}  // namespace velumar
