#include "charthost/view/chart_pane.h"

#include <QAccessible>
#include <QClipboard>
#include <QFileDialog>
#include <QGuiApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <algorithm>

#include "charthost/bar_text.h"
#include "charthost/chart_windows.h"
#include "charthost/view/chart_plot.h"
#include "charthost/view/picture_dialog.h"
#include "charts/qt_text.h"
#include "charts/value_ticker.h"

namespace velumar {
namespace {

struct ChartPaneTest : testing::Test {
  std::unique_ptr<ChartPane> Open(const std::string& symbol, const ChartOptions& options = {},
                                  const std::map<int, Frame>& frames = {}) {
    auto pane = std::make_unique<ChartPane>(program_.source,
                                            SeriesRequest{program_.folder, symbol, std::nullopt},
                                            frames, options, nullptr);
    pane->resize(900, 600);
    pane->show();
    pane->Plot().replot();
    return pane;
  }
  static void Drag(ChartPlot& plot, QPoint from, QPoint to, Qt::KeyboardModifiers held = {},
                   Qt::MouseButton button = Qt::LeftButton) {
    QTest::mousePress(&plot, button, held, from);
    QTest::mouseMove(&plot, to);
    QTest::mouseRelease(&plot, button, held, to);
    plot.replot();
  }
  // The texts over the plot.
  static std::vector<const QCPItemText*> Tags(const ChartPlot& plot) {
    std::vector<const QCPItemText*> tags;
    for (int i = 0; i < plot.itemCount(); ++i) {
      const auto* const tag = qobject_cast<QCPItemText*>(plot.item(i));
      if (tag != nullptr && tag->visible()) tags.push_back(tag);
    }
    return tags;
  }
  static bool Shows(const ChartPlot& plot, const std::string& text) {
    return std::ranges::any_of(Tags(plot),
                               [&](const auto* tag) { return tag->text() == ToQt(text); });
  }
  // How many pixels of this colour the plot shows.
  static std::ptrdiff_t Pixels(ChartPane& pane, const QColor& colour) {
    pane.Plot().replot();
    return Pixels(pane.Plot().toPixmap().toImage(), colour);
  }
  static std::ptrdiff_t Pixels(const QImage& image, const QColor& colour) {
    const QImage picture = image.convertToFormat(QImage::Format_ARGB32);
    const auto* const pixels = reinterpret_cast<const QRgb*>(picture.constBits());
    return std::count(pixels, pixels + picture.width() * picture.height(), colour.rgb());
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
  EXPECT_NEAR(window.Span(), usual, 1e-9);
  const double newest = window.First();
  for (const auto& [key, part] :
       {std::pair{Qt::Key_Left, 0.1}, {Qt::Key_PageUp, 0.9}, {Qt::Key_Right, -0.1}}) {
    const double before = window.First();
    QTest::keyClick(&pane->Plot(), key);
    EXPECT_NEAR(before - window.First(), part * usual, 1e-6) << key;
  }
  QTest::keyClick(&pane->Plot(), Qt::Key_PageDown);
  EXPECT_NEAR(window.First(), newest, 1e-6);
  QTest::keyClick(&pane->Plot(), Qt::Key_Home);
  EXPECT_EQ(window.FirstBar(), 0);
  const double oldest = window.First();
  Drag(pane->Plot(), {400, 200}, {300, 220});
  EXPECT_GT(window.First(), oldest + 10);
  EXPECT_NEAR(window.Span(), usual, 1e-9);
  auto* const newest_button = pane->findChild<QPushButton*>();
  for (const auto& [from, to] : {std::pair{200, 400}, {400, 200}}) {
    Drag(pane->Plot(), {from, 200}, {to, 220}, {}, Qt::RightButton);
    EXPECT_NEAR(window.Span(), usual * 200 / pane->Plot().Prices().width(), 1);
    QTest::mouseDClick(&pane->Plot(), Qt::LeftButton, {}, {400, 220});
    pane->Plot().replot();
    EXPECT_NEAR(window.Span(), usual, 1e-9);
    EXPECT_TRUE(window.Shows(299));
    EXPECT_FALSE(newest_button->isVisible());
    QTest::keyClick(&pane->Plot(), Qt::Key_Home);
    pane->Plot().replot();
    EXPECT_TRUE(newest_button->isVisible());
  }
}

TEST_F(ChartPaneTest, ZoomsAtThePointerAndNotBelowEightBars) {
  const auto pane = Open("SCB");
  const ViewWindow& window = pane->Window();
  const auto roll = [&](int steps, int sideways = 0) {
    const QPointF place(300, 200);
    QWheelEvent wheel(place, pane->Plot().mapToGlobal(place), {}, {120 * sideways, 120 * steps},
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&pane->Plot(), &wheel);
  };
  const double share = 300.0 / pane->Plot().width();
  const double bar = window.First() + share * window.Span();
  roll(3);
  EXPECT_LT(window.Span(), ViewWindow::kUsualSpan);
  EXPECT_NEAR(window.First() + share * window.Span(), bar, 8);
  roll(60);
  const double first = window.First();
  roll(1);
  EXPECT_DOUBLE_EQ(window.First(), first) << "a zoom at its limit scrolls nothing";
  roll(0, 20);
  EXPECT_LT(window.First(), first - 5);
  roll(0, -20);
  EXPECT_NEAR(window.First(), first, 1e-6);
}

// The series rises and falls on every other day, and has a volume each day.
TEST_F(ChartPaneTest, DrawsRisingAndFallingBarsInTheirColours) {
  const Palette& colours = Palette::Light();
  const auto pane = Open("SCB");
  for (const ChartStyle style : {ChartStyle::kCandles, ChartStyle::kHollow, ChartStyle::kBars}) {
    pane->SetOptions({.style = style});
    EXPECT_GT(Pixels(*pane, colours.up), 500);
    EXPECT_GT(Pixels(*pane, colours.down), 500);
    EXPECT_GT(Pixels(*pane, colours.down_volume), 500);
  }
  pane->SetOptions({.safe_colours = true});
  EXPECT_EQ(Pixels(*pane, colours.up) + Pixels(*pane, colours.down), 0);
  EXPECT_GT(Pixels(*pane, Palette::SafeLight().down), 500);
  pane->SetOptions({.style = ChartStyle::kLine, .volume = false});
  EXPECT_EQ(Pixels(*pane, colours.down_volume), 0);
  // Candles of averages are others, and an area covers the ground below it.
  pane->SetOptions({.volume = false});
  const auto falling = Pixels(*pane, colours.down);
  pane->SetOptions({.style = ChartStyle::kHeikinAshi, .volume = false});
  EXPECT_NE(Pixels(*pane, colours.down), falling);
  pane->SetOptions({.style = ChartStyle::kLine, .volume = false});
  const auto ground = Pixels(*pane, colours.field);
  pane->SetOptions({.style = ChartStyle::kArea, .volume = false});
  EXPECT_LT(Pixels(*pane, colours.field), ground * 3 / 4);
  const auto rising = Open("ADVANC");  // each close is above its open
  EXPECT_EQ(Pixels(*rising, colours.down), 0);
  std::vector<Bar> flat = DailyBars(9);
  for (Bar& bar : flat) bar = {bar.date, 0, 10, 12, 9, 11, 5, 0};
  StoreSecurity(program_.folder, {"FLAT", "Flat", -1}, flat, program_.cache);
  EXPECT_EQ(Pixels(*Open("FLAT", {.style = ChartStyle::kHollow}), colours.down), 0) << "unchanged";
}

// The pointer rests while a replay scrolls the bars below it.
TEST_F(ChartPaneTest, NamesTheBarBelowThePointerAfterTheChartHasScrolled) {
  const auto pane = Open("SCB");
  const auto shows_date_of = [&](int bar) {
    return Shows(pane->Plot(), LongDayText(pane->Document().Model().Series().dates[bar]));
  };
  int bar = -1;
  QObject::connect(&pane->Plot(), &ChartPlot::BarHovered, [&](int hovered) { bar = hovered; });
  QTest::mouseMove(&pane->Plot(), {400, 200});
  ASSERT_GE(bar, 20);
  EXPECT_TRUE(shows_date_of(bar));
  const int before = bar;
  pane->Window().Pan(-20);
  pane->WindowMoved();
  pane->Plot().replot();
  EXPECT_EQ(bar, before - 20);
  EXPECT_TRUE(shows_date_of(bar));
  QEvent leave(QEvent::Leave);
  QCoreApplication::sendEvent(&pane->Plot(), &leave);
  EXPECT_FALSE(shows_date_of(before - 20)) << "the pointer has left";
}

// Nothing of the theme, interval and plan before is left.
TEST_F(ChartPaneTest, LooksAfterEachChangeLikeAChartThatWasJustOpened) {
  const auto pane = Open("SCB");
  const auto upper = [](ChartPane& one) { return one.Document().Model().Prices().upper; };
  for (const auto& [theme, unit] : {std::pair{ChartTheme::kDark, Frame::Unit::kWeek},
                                    {ChartTheme::kLight, Frame::Unit::kMonth}}) {
    pane->SetPositions({{}, {}, {{90, upper(*pane) + 0.2, false}}});
    pane->Plot().replot();
    pane->SetPositions({});
    pane->ShowFrame({unit});
    ApplyTheme(theme);
    QCoreApplication::processEvents();
    const auto fresh = Open("SCB", {}, {{-1, {unit}}});
    pane->Plot().replot();
    EXPECT_EQ(upper(*pane), upper(*fresh)) << "no room for the plan";
    for (int row = 0; row < 2; ++row) {
      const auto axis = [row](ChartPane& one) {
        return one.Plot().axisRects()[row]->axis(QCPAxis::atBottom);
      };
      EXPECT_EQ(axis(*pane)->tickVectorLabels(), axis(*fresh)->tickVectorLabels());
      const bool dark = theme == ChartTheme::kDark;
      EXPECT_EQ(axis(*pane)->tickLabelColor(), (dark ? Palette::Dark() : Palette::Light()).muted);
    }
  }
  ApplyTheme(ChartTheme::kSystem);
}

TEST_F(ChartPaneTest, MeasuresWhileShiftIsHeld) {
  const auto pane = Open("SCB");
  ChartPlot& plot = pane->Plot();
  const auto measured = [&plot] {
    for (const auto* const text : Tags(plot)) {
      if (text->text().contains(QStringLiteral("bar"))) return text->text();
    }
    return QString();
  };
  const ViewWindow before = pane->Window();
  Drag(plot, {400, 200}, {500, 220}, Qt::ShiftModifier);
  const BarSeries& series = pane->Document().Model().Series();
  EXPECT_EQ(measured(),
            ToQt(DistanceText(series, *plot.PlaceAt({400, 200}), *plot.PlaceAt({500, 220}))));
  EXPECT_TRUE(measured().contains(QStringLiteral("bars, "))) << measured().toStdString();
  EXPECT_EQ(pane->Window().First(), before.First());
  QTest::keyRelease(&plot, Qt::Key_Shift, Qt::NoModifier);
  EXPECT_TRUE(measured().isEmpty());
  for (const Qt::KeyboardModifiers held : {Qt::ShiftModifier, Qt::NoModifier}) {
    Drag(plot, {400, 200}, {500, 220}, held);
    EXPECT_EQ(measured().isEmpty(), held == Qt::NoModifier);
  }
  EXPECT_NE(pane->Window().First(), before.First()) << "a plain drag scrolls";
  pane->Window().Pan(before.First() - pane->Window().First());
  pane->WindowMoved();
  plot.replot();

  // With the keys, from the newest bar back into the past beyond the left edge.
  QEvent leave(QEvent::Leave);
  QCoreApplication::sendEvent(&plot, &leave);
  for (int i = 0; i < 200; ++i) {
    QTest::keyPress(&plot, Qt::Key_Left, Qt::ControlModifier | Qt::ShiftModifier);
  }
  EXPECT_EQ(measured(),
            ToQt(DistanceText(series, {299, series.closes[299]}, {99, series.closes[99]})));
  EXPECT_TRUE(pane->Window().Shows(99));
  QTest::keyClick(&plot, Qt::Key_Escape);
  EXPECT_TRUE(measured().isEmpty());

  // The run goes back to a bar between the two.
  Drag(plot, {300, 200}, {500, 220}, Qt::ShiftModifier);
  const int from = plot.PlaceAt({300, 200})->bar;
  ASSERT_LT(from + 2, plot.PlaceAt({500, 220})->bar);
  StoreSecurity(program_.folder, {"SCB", "Bank", -1}, DailyBars(from + 2), program_.cache);
  pane->RefreshNow();
  plot.replot();
  EXPECT_TRUE(measured().isEmpty());
}

TEST_F(ChartPaneTest, EveryPaneHasItsValuesOnTheLeftInTheSameColour) {
  const auto pane = Open("SCB");
  pane->SetOptions({.axis_at_left = true, .indicators = {{.key = "rsi", .parameters = {14}}}});
  pane->Plot().replot();
  ASSERT_EQ(pane->Plot().axisRectCount(), 3);
  for (const QCPAxisRect* const rect : pane->Plot().axisRects()) {
    const QCPAxis& left = *rect->axis(QCPAxis::atLeft);
    EXPECT_TRUE(left.visible());
    EXPECT_FALSE(rect->axis(QCPAxis::atRight)->tickLabels());
    EXPECT_EQ(left.tickLabelColor(), rect->axis(QCPAxis::atBottom)->tickLabelColor());
    EXPECT_FALSE(left.subTicks());
  }
}

TEST_F(ChartPaneTest, PercentTicksStayRoundHoweverFarTheChartIsScrolled) {
  const auto pane = Open("SCB");
  pane->SetOptions({.scale = PriceScale::kPercent});
  const QCPAxis& axis = *pane->Plot().Prices().axis(QCPAxis::atRight);
  for (const int bars : {0, -7, -30, -100}) {
    pane->Window().Pan(bars);
    pane->WindowMoved();
    pane->Plot().replot();
    const double base = *pane->Document().Model().PercentBase();
    const QVector<double> ticks = axis.tickVector();
    ASSERT_GE(ticks.size(), 2);
    const double steps = (ticks[0] - base) / (ticks[1] - ticks[0]);
    EXPECT_NEAR(steps, std::nearbyint(steps), 1e-6) << bars;
    EXPECT_NEAR((ticks[1] - ticks[0]) / base * 100,
                RoundStep((ticks[1] - ticks[0]) / base * 100 * 0.999), 1e-9);
  }
}

TEST_F(ChartPaneTest, SavesThePictureInAllFormatsAndCopiesIt) {
  const auto pane = Open("SCB");
  QTest::mouseMove(&pane->Plot(), {400, 200});
  const QImage picture = BitmapOf(pane->AsPicture());
  EXPECT_EQ(picture.size(), pane->size());
  EXPECT_GT(Pixels(picture, Palette::Light().up), 500);
  for (const QString& ending : PictureFileEndings()) {
    const std::string file = program_.scratch.Sub("chart." + ending.toStdString());
    SavePicture(pane->AsPicture(), QString::fromStdString(file));
    EXPECT_GT(std::filesystem::file_size(file), 5000U) << file;
    PlotPicture measured = pane->AsPicture();
    measured.paint = [&file](QCPPainter& painter) {
      EXPECT_NEAR(painter.fontMetrics().height(), QFontMetrics(painter.font()).height(), 2) << file;
    };
    SavePicture(measured, QString::fromStdString(file));
  }
  AskForPictureFile(*pane, *pane);
  emit pane->findChild<QFileDialog*>()->fileSelected(
      QString::fromStdString(program_.scratch.Sub("nowhere/chart.png")));
  const auto* const box = pane->findChild<QMessageBox*>();
  ASSERT_NE(box, nullptr);
  EXPECT_TRUE(box->isVisible() && box->text().contains(QStringLiteral("nowhere")));
  CopyPicture(*pane);
  EXPECT_EQ(QGuiApplication::clipboard()->image().size(), picture.size());
}

TEST_F(ChartPaneTest, DescribesTheBarBelowTheCrosshairForScreenReaders) {
  const auto pane = Open("SCB");
  QTest::keyClick(&pane->Plot(), Qt::Key_Left, Qt::ControlModifier);
  const QAccessibleInterface* const plot = QAccessible::queryAccessibleInterface(&pane->Plot());
  EXPECT_EQ(plot->text(QAccessible::Name), QStringLiteral("Chart of SCB, Daily"));
  const BarSeries& series = pane->Document().Model().Series();
  EXPECT_TRUE(plot->text(QAccessible::Description).contains(ToQt(MomentText(series, 298))));
}

// The value at the pointer and the last price are both on the axis.
TEST_F(ChartPaneTest, KeepsTheLastPriceReadableNextToThePointer) {
  const auto pane = Open("SCB");
  const QCPAxis& prices = *pane->Plot().Prices().axis(QCPAxis::atRight);
  EXPECT_EQ(prices.scaleType(), QCPAxis::stLinear);
  pane->SetOptions({.scale = PriceScale::kLogarithmic});
  pane->Plot().replot();
  EXPECT_EQ(prices.scaleType(), QCPAxis::stLogarithmic);
  const double last = prices.coordToPixel(pane->Document().Model().Series().closes.back());
  for (const int distance : {-9, -1, 0, 5, 30}) {
    QTest::mouseMove(&pane->Plot(), {400, static_cast<int>(last) + distance});
    std::vector<std::pair<double, double>> tags;  // top and bottom
    for (const auto* const tag : Tags(pane->Plot())) {
      if (tag->left->pixelPosition().x() <= pane->Plot().Prices().right()) continue;
      tags.emplace_back(tag->top->pixelPosition().y(), tag->bottom->pixelPosition().y());
    }
    ASSERT_EQ(tags.size(), 2U);
    EXPECT_TRUE(tags[0].second < tags[1].first || tags[1].second < tags[0].first) << distance;
  }
}

}  // namespace
}  // namespace velumar
