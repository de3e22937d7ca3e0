#include "charthost/view/chart_pane.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QTest>

#include "charthost/chart_windows.h"
#include "charthost/view/chart_plot.h"
#include "charthost/view/readout_bar.h"

namespace velumar {
namespace {

class ChartPaneTest : public testing::Test {
 protected:
  std::unique_ptr<ChartPane> Open(const std::string& symbol) {
    auto pane = std::make_unique<ChartPane>(program_.source,
                                            SeriesRequest{program_.folder, symbol, std::nullopt},
                                            ChartOptions(), nullptr);
    pane->resize(900, 600);
    pane->show();
    pane->Plot().replot();
    return pane;
  }
  static void Drag(ChartPane& pane, Qt::MouseButton button, int from, int to) {
    QTest::mousePress(&pane.Plot(), button, {}, {from, 200});
    QTest::mouseMove(&pane.Plot(), {to, 220});
    QTest::mouseRelease(&pane.Plot(), button, {}, {to, 220});
  }

  ChartProgram program_;
};

TEST_F(ChartPaneTest, ZoomsAndPansWithKeysAndMouse) {
  const auto pane = Open("SCB");
  const ViewWindow& window = pane->Window();
  const double usual = window.Span();
  QTest::keyClick(&pane->Plot(), Qt::Key_Plus);
  EXPECT_LT(window.Span(), usual);
  QTest::keyClick(&pane->Plot(), Qt::Key_Minus);
  QTest::keyClick(&pane->Plot(), Qt::Key_Home);
  EXPECT_EQ(window.FirstBar(), 0);
  const double oldest = window.First();
  Drag(*pane, Qt::LeftButton, 400, 300);
  EXPECT_GT(window.First(), oldest + 10);
  EXPECT_NEAR(window.Span(), usual, 1e-9);
  pane->Plot().replot();
  Drag(*pane, Qt::RightButton, 200, 400);
  EXPECT_LT(window.Span(), usual / 3);
  QTest::mouseDClick(&pane->Plot(), Qt::LeftButton, {}, {400, 220});
  EXPECT_NEAR(window.Span(), usual, 1e-9);
  EXPECT_TRUE(window.Shows(299));
}

// Each style of each series is painted once: the sanitizers look on.
TEST_F(ChartPaneTest, PaintsEveryStyleAndSaysWhatIsMissing) {
  for (const char* symbol : {"SCB", "NONE"}) {
    const auto pane = Open(symbol);
    for (const ChartStyle style : {ChartStyle::kCandles, ChartStyle::kBars, ChartStyle::kLine}) {
      ChartOptions options;
      options.style = style;
      pane->SetOptions(options);
      EXPECT_FALSE(pane->Plot().grab().isNull());
    }
    bool said = false;
    for (const QLabel* label : pane->findChildren<QLabel*>()) {
      said |= label->isVisible() && label->text().contains(QStringLiteral("no security \"NONE\""));
    }
    EXPECT_EQ(said, std::string(symbol) == "NONE");
  }
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
