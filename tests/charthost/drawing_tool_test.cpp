// Drawing with mouse and keys in the main window.
#include "charthost/view/drawing_tool.h"

#include <QAction>
#include <QDialog>
#include <QInputDialog>
#include <QListWidget>
#include <QMenuBar>
#include <QPushButton>
#include <QTest>
#include <QToolBar>

#include "charthost/chart_windows.h"
#include "charthost/view/chart_pane.h"
#include "charthost/view/chart_plot.h"

namespace velumar {
namespace {

class DrawingToolTest : public testing::Test {
 protected:
  DrawingToolTest() { Open("SCB", -1); }

  void Open(const std::string& symbol, int interval) {
    program_.window->OpenDirectly({program_.folder, symbol, interval});
    QCoreApplication::processEvents();  // the widgets get their sizes
    Pane().Plot().replot();
  }
  ChartPane& Pane() { return *program_.window->ActiveChart(); }
  DrawingTool& Tool() { return *Pane().Drawings(); }
  std::vector<Drawing> Kept() {
    const DrawingsBySecurity all = LoadDrawings(program_.scratch / "drawings.json");
    const auto found = all.find({"SCB", "Bank"});
    return found == all.end() ? std::vector<Drawing>() : found->second;
  }
  QPoint Pixel(double bar, double price) {
    const QCPAxisRect& prices = Pane().Plot().Prices();
    return QPointF(prices.axis(QCPAxis::atBottom)->coordToPixel(bar),
                   prices.axis(QCPAxis::atRight)->coordToPixel(price))
        .toPoint();
  }
  void Press(Qt::Key key) { QTest::keyClick(&Pane().Plot(), key); }
  void Click(QPoint pixel, Qt::KeyboardModifiers held = {}) {
    QTest::mouseMove(&Pane().Plot(), pixel);
    QTest::mouseClick(&Pane().Plot(), Qt::LeftButton, held, pixel);
    Pane().Plot().replot();
  }
  void Drag(QPoint from, QPoint to) {
    QTest::mousePress(&Pane().Plot(), Qt::LeftButton, {}, from);
    QTest::mouseMove(&Pane().Plot(), (from + to) / 2);
    QTest::mouseMove(&Pane().Plot(), to);
    QTest::mouseRelease(&Pane().Plot(), Qt::LeftButton, {}, to);
    Pane().Plot().replot();
  }
  // An entry of a menu of the window.
  QAction& Entry(const QString& text) {
    for (QAction* const action : program_.window->findChildren<QAction*>()) {
      if (action->text().remove(u'&').section(u'\t', 0, 0) == text) return *action;
    }
    throw std::runtime_error(text.toStdString());
  }
  void Choose(const QString& text) { Entry(text).trigger(); }
  void Shorten(int days) {
    StoreSecurity(program_.folder, {"SCB", "Bank", -1}, DailyBars(days), program_.cache);
    Pane().Refresh();
    Pane().Plot().replot();
  }
  float High(int bar) { return Pane().Document().Model().Series().highs[bar]; }

  ChartProgram program_;
};

TEST_F(DrawingToolTest, DrawsEachKindWithClicksOrADragAndKeepsIt) {
  for (const DrawingRow& row : DrawingCatalogue()) {
    if (row.kind == DrawingKind::kText) continue;
    Press(static_cast<Qt::Key>(row.letter));
    for (std::size_t i = 0; i < row.anchors; ++i) {
      EXPECT_TRUE(Kept().empty() || Kept().back().kind != row.kind) << row.name;
      Click(Pixel(200 + 20.0 * double(i), 101 + double(i)), Qt::ControlModifier);
    }
    ASSERT_FALSE(Kept().empty()) << Pane().Document().Error();
    EXPECT_EQ(Kept().back().kind, row.kind);
  }
  const std::size_t count = Kept().size();
  Press(Qt::Key_T);
  Drag(Pixel(220, 103), Pixel(260, 99));
  ASSERT_EQ(Kept().size(), count + 1);
  EXPECT_EQ(Kept().back().anchors[0].time.date, MadeDate(220));
  EXPECT_EQ(Kept().back().anchors[1].time.date, MadeDate(260));
  Press(Qt::Key_H);
  Press(Qt::Key_Escape);
  const double first = Pane().Window().First();
  Drag(Pixel(205, 97), Pixel(225, 97));
  EXPECT_EQ(Kept().size(), count + 1) << "Escape ends drawing";
  EXPECT_LT(Pane().Window().First(), first) << "so that a drag scrolls again";
  Press(Qt::Key_T);
  Click(Pixel(205, 97), Qt::ControlModifier);
  Press(Qt::Key_H);
  Click(Pixel(215, 98), Qt::ControlModifier);
  ASSERT_EQ(Kept().size(), count + 2);
  EXPECT_EQ(Kept().back().kind, DrawingKind::kHorizontalLine)
      << "the line that was begun is dropped";
}

TEST_F(DrawingToolTest, NothingOfADrawingStaysOnTheChart) {
  const auto picture = [this] {
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(&Pane().Plot(), &leave);
    Pane().Plot().replot();
    return BitmapOf(Pane().AsPicture());
  };
  const QImage bare = picture();
  QImage line;  // the arrow has the same ends, and a head
  for (const Qt::Key key : {Qt::Key_T, Qt::Key_H, Qt::Key_F, Qt::Key_Q, Qt::Key_A, Qt::Key_T}) {
    Press(key);
    Click(Pixel(200, 101), Qt::ControlModifier);
    if (key != Qt::Key_H) Click(Pixel(220, 102), Qt::ControlModifier);
    const QImage selected = picture();
    Press(Qt::Key_Escape);
    const QImage drawn = picture();
    EXPECT_NE(drawn, selected);
    if (key == Qt::Key_T && !line.isNull()) {
      EXPECT_EQ(drawn, line);
    }
    if (key == Qt::Key_T) line = drawn;
    Choose(QStringLiteral("Undo"));
    EXPECT_EQ(picture(), bare) << key;
  }
}

TEST_F(DrawingToolTest, ACopyIsHiddenBeforeTheBarItWasMadeAt) {
  Shorten(290);
  Press(Qt::Key_H);
  Click(Pixel(250, 101), Qt::ControlModifier);
  Shorten(300);
  Choose(QStringLiteral("Duplicate"));
  Shorten(295);
  EXPECT_EQ(Tool().Shown().size(), 1U);
}

TEST_F(DrawingToolTest, DrawsByKeysAlone) {
  Press(Qt::Key_A);
  Press(Qt::Key_Return);
  Press(Qt::Key_Return);
  EXPECT_TRUE(Kept().empty()) << "no arrow from a place to itself";
  for (int i = 0; i < 3; ++i) {
    QTest::keyClick(&Pane().Plot(), Qt::Key_Left, Qt::ControlModifier);
  }
  QTest::keyClick(&Pane().Plot(), Qt::Key_Enter, Qt::KeypadModifier);
  ASSERT_EQ(Kept().size(), 1U);
  EXPECT_EQ(Kept()[0].anchors[0].time.date, MadeDate(299));
  EXPECT_EQ(Kept()[0].anchors[1].time.date, MadeDate(296));
}

TEST_F(DrawingToolTest, SnapsMovesUndoesAndDeletes) {
  Press(Qt::Key_T);
  const QPoint near_high = Pixel(210, High(210)) + QPoint(0, -5);
  Click(near_high);
  Click(Pixel(240, 98), Qt::ControlModifier);
  ASSERT_EQ(Kept().size(), 1U);
  EXPECT_FLOAT_EQ(static_cast<float>(Kept()[0].anchors[0].price), High(210));
  const Drawing drawn = Kept()[0];

  // As a whole, by ten bars.
  const QPoint middle = (Pixel(210, High(210)) + Pixel(240, 98)) / 2;
  Drag(middle, middle + Pixel(220, 100) - Pixel(210, 100));
  EXPECT_EQ(Kept()[0].anchors[0].time.date, MadeDate(220));
  EXPECT_EQ(Kept()[0].anchors[1].time.date, MadeDate(250));
  EXPECT_NEAR(Kept()[0].anchors[1].price, drawn.anchors[1].price, 0.1);
  // By its second handle.
  Drag(Pixel(250, 98), Pixel(255, 96));
  EXPECT_EQ(Kept()[0].anchors[0].time.date, MadeDate(220));
  EXPECT_EQ(Kept()[0].anchors[1].time.date, MadeDate(255));
  Choose(QStringLiteral("Undo"));
  Choose(QStringLiteral("Undo"));
  ASSERT_EQ(Kept(), std::vector<Drawing>{drawn});
  Choose(QStringLiteral("Redo"));
  EXPECT_NE(Kept()[0], drawn);
  Choose(QStringLiteral("Undo"));
  Pane().Plot().replot();
  Click(middle);
  Choose(QStringLiteral("Duplicate"));
  ASSERT_EQ(Kept().size(), 2U);
  Tool().Recolour(5);
  EXPECT_EQ(Kept()[1].colour, 5);
  EXPECT_EQ(Kept()[0].colour, drawn.colour);
  Press(Qt::Key_Delete);
  EXPECT_EQ(Kept(), std::vector<Drawing>{drawn});
}

TEST_F(DrawingToolTest, ShowsADrawingInEveryChartFrameAndStartButNotBeforeItWasDrawn) {
  Press(Qt::Key_H);
  Click(Pixel(250, 101), Qt::ControlModifier);
  Press(Qt::Key_Y);
  Click(Pixel(260, 101), Qt::ControlModifier);
  Click(Pixel(305, 102), Qt::ControlModifier);  // after the newest bar
  ASSERT_EQ(Kept().size(), 2U);
  EXPECT_EQ(Kept()[1].anchors[1].time.later, 6);
  EXPECT_EQ(Tool().Shown().size(), 2U);
  Pane().ShowFrame({Frame::Unit::kWeek});
  Pane().Plot().replot();
  EXPECT_EQ(Tool().Shown().size(), 2U);
  Pane().ShowFrame({});
  Shorten(299);
  EXPECT_EQ(Tool().Shown().size(), 0U) << "the run has gone back";
  EXPECT_FALSE(Entry(QStringLiteral("Undo")).isEnabled());
  Press(Qt::Key_H);
  Click(Pixel(250, 102), Qt::ControlModifier);
  EXPECT_EQ(Tool().Shown().size(), 1U);
  Shorten(300);
  EXPECT_EQ(Tool().Shown().size(), 3U);
  EXPECT_TRUE(Entry(QStringLiteral("Undo")).isEnabled());
  Click(Pixel(250, 102));
  ASSERT_TRUE(Tool().Selected());
  StoreSecurity(program_.folder, {"SCB", "SCB x100", -1}, DailyBars(300), program_.cache);
  Pane().Refresh();
  EXPECT_FALSE(Tool().Selected()) << "a new run shows another series";
  Pane().Plot().replot();
  EXPECT_EQ(Tool().Shown().size(), 0U);
  Open("SCB", 5);  // up to the third day
  EXPECT_EQ(Tool().Shown().size(), 0U);
  Open("ADVANC", -1);
  EXPECT_EQ(Tool().Shown().size(), 0U);
}

TEST_F(DrawingToolTest, WritesTextsAndListsEverything) {
  Press(Qt::Key_X);
  Click(Pixel(250, 101));
  auto* const question = Pane().Plot().findChild<QInputDialog*>();
  ASSERT_NE(question, nullptr);
  question->setTextValue(QStringLiteral("  Gap "));
  question->accept();
  ASSERT_EQ(Kept().size(), 1U);
  EXPECT_EQ(Kept()[0].text, "Gap");
  Press(Qt::Key_H);
  Click(Pixel(20 + Pane().Window().First(), 99), Qt::ControlModifier);
  Press(Qt::Key_Escape);
  Choose(QStringLiteral("List of drawings..."));
  QListWidget* drawings = nullptr;
  for (auto* const one : program_.window->findChildren<QListWidget*>()) {
    if (one->accessibleName() == QStringLiteral("Drawings on the chart")) drawings = one;
  }
  ASSERT_NE(drawings, nullptr);
  ASSERT_EQ(drawings->count(), 2);
  EXPECT_THAT(drawings->item(0)->text().toStdString(), StartsWith("\"Gap\":  "));
  drawings->setFocus();
  EXPECT_FALSE(Tool().Selected()) << "a list that opens selects nothing";
  drawings->setCurrentRow(0);
  EXPECT_EQ(Tool().Selected(), 0U);
  for (auto* const button : drawings->window()->findChildren<QPushButton*>()) {
    if (button->text() == QStringLiteral("&Delete")) button->click();
  }
  EXPECT_EQ(drawings->count(), 1);
  EXPECT_EQ(Kept().size(), 1U);
  EXPECT_FALSE(Entry(QStringLiteral("Edit text...")).isEnabled()) << "nothing is selected";
  const auto heading = [&] { return drawings->window()->findChild<QLabel*>()->text(); };
  Open("ADVANC", -1);
  EXPECT_EQ(drawings->count(), 0);
  Open("SCB", -1);
  EXPECT_EQ(drawings->count(), 1);
  EXPECT_EQ(heading(), QStringLiteral("SCB, Daily"));
  program_.window->CloseAll();
  EXPECT_EQ(drawings->count(), 0);
  EXPECT_EQ(heading(), QStringLiteral("No chart is open"));
}

TEST_F(DrawingToolTest, ADamagedFileIsNamedAndStays) {
  const auto file = program_.scratch / "drawings.json";
  WriteFile(file, "[]");
  Open("ADVANC", -1);
  const auto labels = Pane().findChildren<QLabel*>();
  EXPECT_TRUE(std::ranges::any_of(labels, [](const QLabel* label) {
    return !label->isHidden() && label->text().contains(QStringLiteral("drawings.json"));
  }));
  Press(Qt::Key_H);
  Click(Pixel(20, 101));
  EXPECT_EQ(Tool().Shown().size(), 1U);
  EXPECT_EQ(ReadFile(file), "[]");
}

TEST_F(DrawingToolTest, TheToolbarShowsTheNextColourAndCanBeHidden) {
  auto* const bar = program_.window->findChild<QToolBar*>();
  ASSERT_NE(bar, nullptr);
  EXPECT_FALSE(bar->isHidden());
  for (const QAction* const action : bar->actions()) {
    if (action->isSeparator()) continue;
    EXPECT_FALSE(bar->widgetForAction(const_cast<QAction*>(action))->accessibleName().isEmpty());
  }
  const auto colour = [this] {
    return Entry(QStringLiteral("Colour")).icon().pixmap(14).toImage().pixelColor(7, 7);
  };
  const QColor before = colour();
  for (const char* const name : {"Colour", "Interval"}) {
    QMenu& menu = *Entry(QString::fromLatin1(name)).menu();
    emit menu.aboutToShow();
    const auto entries = menu.actions().size();
    emit menu.aboutToShow();
    EXPECT_EQ(menu.actions().size(), entries) << name;
  }
  Choose(QStringLiteral("Teal"));
  EXPECT_NE(colour(), before);
  Choose(QStringLiteral("Drawing toolbar"));
  EXPECT_TRUE(bar->isHidden());
  EXPECT_FALSE(program_.settings->Options().drawing_bar);
}

}  // namespace
}  // namespace velumar
