#include "charthost/view/chart_pane.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QTest>

#include "charthost/bar_text.h"
#include "charthost/chart_windows.h"
#include "charthost/view/chart_plot.h"
#include "charthost/view/readout_bar.h"
#include "charts/qt_text.h"

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
  // How many pixels of this colour the plot shows.
  static int Pixels(ChartPane& pane, const QColor& colour) {
    pane.Plot().replot();
    const QImage picture = pane.Plot().toPixmap().toImage();
    int count = 0;
    for (int y = 0; y < picture.height(); ++y) {
      for (int x = 0; x < picture.width(); ++x) {
        count += picture.pixelColor(x, y) == colour ? 1 : 0;
      }
    }
    return count;
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

TEST_F(ChartPaneTest, ZoomsAtThePointerAndNotBelowEightBars) {
  const auto pane = Open("SCB");
  const ViewWindow& window = pane->Window();
  const auto roll = [&](int steps) {
    const QPointF place(300, 200);
    QWheelEvent wheel(place, pane->Plot().mapToGlobal(place), {}, {0, 120 * steps}, Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&pane->Plot(), &wheel);
  };
  const double share = 300.0 / pane->Plot().width();
  const double bar = window.First() + share * window.Span();
  roll(3);
  EXPECT_LT(window.Span(), ViewWindow::kUsualSpan);
  EXPECT_NEAR(window.First() + share * window.Span(), bar, 8);
  for (int i = 0; i < 60; ++i) roll(1);
  const double first = window.First();
  EXPECT_NEAR(window.Span(), ViewWindow::kSmallestSpan, 1e-6);
  roll(1);
  EXPECT_DOUBLE_EQ(window.First(), first) << "a zoom at its limit scrolls nothing";
}

// The series rises and falls on every other day, and has a volume each day.
TEST_F(ChartPaneTest, DrawsRisingAndFallingBarsInTheirColours) {
  const Palette& colours = Palette::Light();
  const auto pane = Open("SCB");
  for (const ChartStyle style : {ChartStyle::kCandles, ChartStyle::kBars}) {
    ChartOptions options;
    options.style = style;
    pane->SetOptions(options);
    EXPECT_GT(Pixels(*pane, colours.up), 500);
    EXPECT_GT(Pixels(*pane, colours.down), 500);
    EXPECT_GT(Pixels(*pane, colours.down_volume), 500);
  }
  ChartOptions line;
  line.style = ChartStyle::kLine;
  line.volume = false;
  pane->SetOptions(line);
  EXPECT_EQ(Pixels(*pane, colours.down_volume), 0);
  const auto rising = Open("ADVANC");  // each close is above its open
  EXPECT_GT(Pixels(*rising, colours.up), 500);
  EXPECT_EQ(Pixels(*rising, colours.down), 0);
}

// The pointer rests while a replay scrolls the bars below it.
TEST_F(ChartPaneTest, NamesTheBarBelowThePointerAfterTheChartHasScrolled) {
  const auto pane = Open("SCB");
  const auto shown = [&](const QString& text) {
    for (int i = 0; i < pane->Plot().itemCount(); ++i) {
      const auto* const tag = qobject_cast<QCPItemText*>(pane->Plot().item(i));
      if (tag != nullptr && tag->visible() && tag->text() == text) return true;
    }
    return false;
  };
  const auto date_of = [&](int bar) {
    return ToQt(LongDayText(pane->Document().Model().Series().dates[bar]));
  };
  int bar = -1;
  QObject::connect(&pane->Plot(), &ChartPlot::BarHovered, [&](int hovered) { bar = hovered; });
  QTest::mouseMove(&pane->Plot(), {400, 200});
  ASSERT_GE(bar, 20);
  EXPECT_TRUE(shown(date_of(bar)));
  pane->Window().Pan(-20);
  pane->WindowMoved();
  pane->Plot().replot();
  EXPECT_TRUE(shown(date_of(bar - 20)));
}

TEST_F(ChartPaneTest, SaysWhatIsMissing) {
  const auto pane = Open("NONE");
  bool said = false;
  for (const QLabel* label : pane->findChildren<QLabel*>()) {
    said |= label->isVisible() && label->text().contains(QStringLiteral("no security \"NONE\""));
  }
  EXPECT_TRUE(said);
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
