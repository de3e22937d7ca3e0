#include "charthost/view/indicators_dialog.h"

#include <gmock/gmock.h>

#include <QTest>
#include <QtWidgets>

#include "charthost/chart_windows.h"
#include "charthost/view/chart_pane.h"
#include "charthost/view/chart_plot.h"

namespace velumar {
namespace {

// The dialog as a trader reaches it, by keys, with a chart of SCB.
class IndicatorsDialogTest : public testing::Test {
 protected:
  IndicatorsDialogTest() {
    Window().OpenDirectly({program_.folder, "SCB", -1});
    QTest::keyClick(program_.window->windowHandle(), Qt::Key_I, Qt::ControlModifier);
  }

  MainWindow& Window() { return *program_.window; }
  ChartPlot& Plot() { return Window().ActiveChart()->Plot(); }
  IndicatorsDialog& Dialog() { return *Window().findChild<IndicatorsDialog*>(); }
  QListWidget& List() { return *Dialog().findChild<QListWidget*>(); }
  QPushButton& Button(const QString& text) {
    for (auto* const button : Dialog().findChildren<QPushButton*>()) {
      if (button->text() == text) return *button;
    }
    throw std::runtime_error("no button " + text.toStdString());
  }
  void Add(const QString& name) {
    for (QAction* const action : Button(QStringLiteral("&Add")).menu()->actions()) {
      if (action->text() == name) action->trigger();
    }
  }
  std::vector<std::string> Labels() {
    std::vector<std::string> labels;
    for (const ChosenIndicator& chosen : program_.settings->Options().indicators) {
      labels.push_back(IndicatorLabel(chosen) + (chosen.shown ? "" : " hidden"));
    }
    return labels;
  }
  // The panes that the chart shows, the one of the prices included.
  int Panes() {
    Plot().replot();
    return Plot().plotLayout()->rowCount();
  }

  ChartProgram program_;
};

TEST_F(IndicatorsDialogTest, AddsChangesHidesAndRemoves) {
  using testing::ElementsAre;
  ASSERT_TRUE(Dialog().isVisible());
  EXPECT_EQ(Panes(), 2);
  Add(QStringLiteral("Relative strength (RSI)"));
  Add(QStringLiteral("MACD"));
  EXPECT_THAT(Labels(), ElementsAre("SMA 20", "SMA 50", "RSI 14", "MACD 12 26 9"));
  EXPECT_EQ(Panes(), 4);
  for (const QCPAxisRect* const pane : Plot().axisRects()) {
    EXPECT_TRUE(pane->axis(QCPAxis::atBottom)->range() ==
                Plot().Prices().axis(QCPAxis::atBottom)->range());
  }
  const auto fields = Dialog().findChildren<QDoubleSpinBox*>();
  ASSERT_EQ(fields.size(), 3);
  EXPECT_EQ(fields[1]->accessibleName(), QStringLiteral("Slow"));
  fields[1]->setValue(30);
  QTest::keyClick(&List(), Qt::Key_Up);
  QTest::keyClick(&List(), Qt::Key_Space);
  EXPECT_THAT(Labels(), ElementsAre("SMA 20", "SMA 50", "RSI 14 hidden", "MACD 12 30 9"));
  EXPECT_EQ(Panes(), 3);
  QTest::keyClick(&List(), Qt::Key_Delete);
  QTest::keyClick(&List(), Qt::Key_Home);
  QTest::keyClick(&List(), Qt::Key_Delete);
  EXPECT_THAT(Labels(), ElementsAre("SMA 50", "MACD 12 30 9"));
  EXPECT_EQ(List().count(), 2);
  QTest::keyClick(&List(), Qt::Key_End);
  for (const int left : {1, 0}) {
    QTest::keyClick(&List(), Qt::Key_Delete);
    EXPECT_EQ(List().count(), left) << "the new last one is selected";
  }
}

TEST_F(IndicatorsDialogTest, SavesLoadsAndDeletesSets) {
  QComboBox* set = nullptr;
  for (auto* const box : Dialog().findChildren<QComboBox*>()) {
    if (box->isEditable()) set = box;
  }
  ASSERT_NE(set, nullptr);
  EXPECT_FALSE(Button(QStringLiteral("Sa&ve")).isEnabled());
  set->setEditText(QStringLiteral(" Two averages "));
  Button(QStringLiteral("Sa&ve")).click();
  Add(QStringLiteral("On-balance volume (OBV)"));
  EXPECT_EQ(Labels().size(), 3U);
  set->setEditText(QStringLiteral(" Two averages "));
  Button(QStringLiteral("&Load")).click();
  EXPECT_THAT(Labels(), testing::ElementsAre("SMA 20", "SMA 50"));
  EXPECT_EQ(ChartSettings().Sets().count("Two averages"), 1U);
  Button(QStringLiteral("&Delete")).click();
  EXPECT_TRUE(ChartSettings().Sets().empty());
}

// A line between two panes is dragged; the new heights are those of the next start.
TEST_F(IndicatorsDialogTest, KeepsTheHeightsOfThePanes) {
  Add(QStringLiteral("Relative strength (RSI)"));
  Plot().replot();
  const auto pane = [&](int row) {
    return static_cast<QCPAxisRect*>(Plot().plotLayout()->element(row, 0))->rect();
  };
  const int before = pane(2).height();
  const QPoint line(200, (pane(1).bottom() + pane(2).top()) / 2);
  const auto send = [&](QEvent::Type type, QPointF place) {
    QMouseEvent event(type, place, Plot().mapToGlobal(place), Qt::LeftButton, Qt::LeftButton, {});
    QCoreApplication::sendEvent(&Plot(), &event);
  };
  send(QEvent::MouseButtonPress, line);
  send(QEvent::MouseMove, line - QPoint(0, 30));
  send(QEvent::MouseButtonRelease, line - QPoint(0, 30));
  QTest::mouseMove(&Plot(), line + QPoint(0, 50));
  Plot().replot();
  EXPECT_NEAR(pane(2).height(), before + 30, 4);
  EXPECT_GT(ChartSettings().Options().indicators[2].height, 30);
  EXPECT_LT(ChartSettings().Options().volume_height, 25);
}

TEST(ChartSettingsTest, TakesOverTheAveragesOfOldSettings) {
  const ScratchFolder scratch;
  KeepSettingsIn(scratch.Sub("settings"));
  {
    QSettings old(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("Velumar"),
                  QStringLiteral("Chart"));
    old.setValue(QStringLiteral("Average1Period"), 13);
    old.setValue(QStringLiteral("Average2Shown"), false);
  }
  ChartSettings settings;
  ChartOptions options = settings.Options();
  ASSERT_EQ(options.indicators.size(), 2U);
  EXPECT_EQ(IndicatorLabel(options.indicators[0]), "SMA 13");
  EXPECT_FALSE(options.indicators[1].shown);
  options.indicators.clear();
  settings.SetOptions(options);
  EXPECT_EQ(settings.Options(), options) << "and only once";
}

}  // namespace
}  // namespace velumar
