#include "charthost/view/main_window.h"

#include <gmock/gmock.h>

#include <QSignalSpy>
#include <QTest>
#include <QtWidgets>
#include <algorithm>

#include "charthost/chart_windows.h"
#include "charthost/view/chart_pane.h"
#include "charthost/view/chart_plot.h"
#include "charthost/view/folder_completer.h"
#include "charthost/view/open_charts.h"
#include "charthost/view/open_dialog.h"

namespace velumar {
namespace {

// Where the keys of a program arrive: in the window in front, or still in the main window, which
// keeps the focus for a while after the dialog has been asked for.
enum class Arrival { kInFront, kInMainWindow };

struct MainWindowTest : testing::TestWithParam<Arrival> {
  QWindow* Target() {
    QWindow* const front = QGuiApplication::focusWindow();
    return GetParam() == Arrival::kInFront && front != nullptr ? front
                                                               : program_.window->windowHandle();
  }
  void Key(Qt::Key key, Qt::KeyboardModifiers held = Qt::NoModifier) {
    QTest::keyClick(Target(), key, held);
  }
  void Type(const std::string& text) {
    for (const char c : text) QTest::keyClick(Target(), c);
  }
  void Chord(Qt::Key menu, Qt::Key letter, Qt::KeyboardModifiers held = Qt::NoModifier) {
    Key(menu, Qt::AltModifier);
    Key(letter, held);
  }
  void OpenBlind(const std::string& folder, const std::string& symbol) {
    Chord(Qt::Key_F, Qt::Key_O, Qt::ShiftModifier);
    Type(folder + "   ");
    Key(Qt::Key_Return);
    Type(symbol + "   ");
    Key(Qt::Key_End);
    Key(Qt::Key_Tab);
    Key(Qt::Key_S, Qt::ShiftModifier);
    Key(Qt::Key_Return);
  }
  OpenDialog& Dialog() { return program_.window->FileDialog(); }
  // Triggers an entry of a menu.
  void Choose(const QString& entry) {
    for (QAction* const action : program_.window->findChildren<QAction*>()) {
      if (action->text() == entry) return action->trigger();
    }
    ADD_FAILURE() << "no entry " << entry.toStdString();
  }
  bool DialogSays(const QString& text) {
    return std::ranges::any_of(Dialog().findChildren<QLabel*>(),
                               [&](const QLabel* label) { return label->text().contains(text); });
  }

  ChartProgram program_;
};

INSTANTIATE_TEST_SUITE_P(Keys, MainWindowTest,
                         testing::Values(Arrival::kInFront, Arrival::kInMainWindow));

TEST_P(MainWindowTest, TakesAWholeRunOfKeysFromOutside) {
  EXPECT_EQ(program_.window->windowTitle(), QStringLiteral("MetaStock"));
  OpenBlind(program_.folder + "\\", "SCB");
  EXPECT_EQ(program_.Last()["event"], "opened");
  EXPECT_EQ(program_.Last()["chart"]["folder"], program_.folder);
  EXPECT_TRUE(program_.window->windowTitle().startsWith(QStringLiteral("MetaStock - SCB")));
  EXPECT_TRUE(Dialog().IsLeaving() || !Dialog().isVisible());
  OpenBlind(program_.scratch.Path().string() + "\\\\my data 50%", "s p-x");
  EXPECT_EQ(program_.Last()["charts"], 2);
  EXPECT_EQ(program_.Last()["chart"]["symbol"], "S P-X");

  Chord(Qt::Key_V, Qt::Key_R, Qt::ShiftModifier);
  EXPECT_EQ(program_.Last()["event"], "refreshed");
  EXPECT_EQ(program_.Last()["active"], 1);
  Key(Qt::Key_Tab, Qt::ControlModifier);
  EXPECT_EQ(program_.Last()["event"], "activated");
  EXPECT_EQ(program_.Last()["chart"]["symbol"], "SCB");

  Chord(Qt::Key_F, Qt::Key_E);
  EXPECT_EQ(program_.Last()["event"], "closed");
  EXPECT_EQ(program_.Last()["charts"], 0);
  EXPECT_EQ(program_.window->windowTitle(), QStringLiteral("MetaStock"));
  EXPECT_FALSE(program_.window->IsMenuShown());
}

// A Cyrillic layout types other letters with the same keys.
TEST_P(MainWindowTest, KnowsItsKeysWhateverLettersTheyType) {
  const auto press = [this](char32_t letter, quint32 code, Qt::KeyboardModifiers held) {
    QKeyEvent key(QEvent::KeyPress, static_cast<int>(letter), held, 0, code, 0);
    QCoreApplication::sendEvent(Target(), &key);
  };
  press(U'\u0410', 'F', Qt::AltModifier);
  press(U'\u0429', 'O', Qt::NoModifier);
  EXPECT_TRUE(Dialog().isVisible());
}

TEST_P(MainWindowTest, SaysInTheDialogWhatIsMissing) {
  OpenBlind(program_.folder, "SC");
  EXPECT_TRUE(Dialog().isVisible());
  EXPECT_TRUE(DialogSays(QStringLiteral("There is no security \"SC\"")));
  EXPECT_EQ(program_.window->ActiveChart(), nullptr);
  Chord(Qt::Key_F, Qt::Key_O);
  Type("/no/such/place");
  Key(Qt::Key_Return);
  EXPECT_TRUE(
      DialogSays(QDir::toNativeSeparators(QStringLiteral("Folder \"/no/such/place\" not found."))));
  // The next run of keys starts from a clean dialog.
  OpenBlind(program_.folder, "ADVANC");
  EXPECT_EQ(program_.Last()["chart"]["symbol"], "ADVANC");
}

TEST_P(MainWindowTest, LetsAPersonChooseARow) {
  Chord(Qt::Key_F, Qt::Key_O);
  Type(program_.folder);
  Key(Qt::Key_Return);
  Type("sc");
  Key(Qt::Key_Tab);
  Key(Qt::Key_Tab);
  Key(Qt::Key_Down);
  Dialog().findChild<QTableView*>()->selectRow(1);
  Key(Qt::Key_Return);
  EXPECT_EQ(program_.Last()["chart"]["interval"], 5);
}

TEST_P(MainWindowTest, CompletesFoldersWithoutTakingOtherKeys) {
  Chord(Qt::Key_F, Qt::Key_O);
  QLineEdit* const line = qobject_cast<QLineEdit*>(Dialog().focusWidget());
  ASSERT_NE(line, nullptr);
  Type(program_.scratch.Path().string() + "/m");
  QCoreApplication::processEvents();
  EXPECT_FALSE(line->hasSelectedText()) << "only after a pause";
  ASSERT_TRUE(QTest::qWaitFor([&] { return line->hasSelectedText(); }, 5000));
  EXPECT_EQ(CleanFolder(line->text()).toStdString(), program_.folder);
  Key(Qt::Key_Return);
  Type("ADVANC");
  Key(Qt::Key_Return);
  EXPECT_EQ(program_.Last()["chart"]["symbol"], "ADVANC");
}

// The keys 1 to 9, and the same in the menu. The next chart of that interval starts with it.
TEST_P(MainWindowTest, ChangesTheIntervalOfTheChartInFront) {
  program_.window->OpenDirectly({program_.folder, "SCB", 5});
  Key(Qt::Key_5);
  EXPECT_EQ(program_.Last()["event"], "interval");
  EXPECT_TRUE(program_.window->windowTitle().endsWith(QStringLiteral("SCB, 60 minutes")));
  EXPECT_EQ(program_.Last()["chart"]["bars"], 6) << "two hours on each of three days";
  Key(Qt::Key_4, Qt::ControlModifier);
  EXPECT_EQ(program_.Last()["chart"]["bars"], 6);
  Key(Qt::Key_1);
  EXPECT_EQ(program_.Last()["chart"]["bars"], 60);
  Key(Qt::Key_8);
  EXPECT_EQ(program_.Last()["chart"]["bars"], 3);
  program_.window->CloseAll();
  program_.window->OpenDirectly({program_.folder, "SCB", 5});
  EXPECT_TRUE(program_.window->windowTitle().endsWith(QStringLiteral("SCB, Daily")));
  EXPECT_EQ(ChartSettings().Options().frames.at(5), Frame{Frame::Unit::kDay});
  OpenBlind(program_.folder, "ADVANC");
  Key(Qt::Key_2);
  EXPECT_TRUE(program_.window->windowTitle().endsWith(QStringLiteral("ADVANC, Daily")))
      << "a digit that was typed too late for the dialog";
}

TEST_P(MainWindowTest, ListsTheSecuritiesThatMatch) {
  auto& list = *Dialog().findChild<QTableView*>();
  const auto rows = [&list] { return list.model()->rowCount(); };
  const auto start = [this] { Chord(Qt::Key_F, Qt::Key_O); };
  start();
  Type(program_.folder);
  Key(Qt::Key_Return);
  EXPECT_EQ(rows(), 4);
  Type("scb ");
  EXPECT_EQ(rows(), 2);
  Key(Qt::Key_Tab);
  Key(Qt::Key_5);
  EXPECT_EQ(rows(), 1);
  Key(Qt::Key_Return);
  EXPECT_EQ(program_.Last()["chart"]["interval"], 5);
  start();
  Key(Qt::Key_Return);  // the folder that was used last
  EXPECT_EQ(rows(), 4) << "a folder is listed whole";
  list.selectRow(0);
  Type("advanc");
  EXPECT_FALSE(list.selectionModel()->hasSelection()) << "what was typed last counts";
  Key(Qt::Key_Return);
  EXPECT_EQ(program_.Last()["chart"]["symbol"], "ADVANC");
  start();
  EXPECT_EQ(rows(), 4) << "the symbol is not kept";
  Type("/no/such/place");
  Key(Qt::Key_Return);
  EXPECT_EQ(rows(), 0);
}

// Options are for all charts, and each tab keeps its chart when it is moved.
TEST_P(MainWindowTest, ChartsBehindATabFollowTheOptionsAndTheirTab) {
  for (const char* const symbol : {"SCB", "ADVANC"}) {
    program_.window->OpenDirectly({program_.folder, symbol, -1});
  }
  Choose(QStringLiteral("&Volume"));
  for (const ChartPane* const chart : program_.window->findChildren<ChartPane*>()) {
    EXPECT_FALSE(chart->Document().Model().Options().volume) << chart->Title().toStdString();
  }
  auto& tabs = *program_.window->findChild<QTabBar*>();
  tabs.moveTab(0, 1);
  EXPECT_TRUE(tabs.tabText(0).startsWith(QStringLiteral("ADVANC")));
  EXPECT_EQ(program_.window->ActiveChart()->Title(), tabs.tabText(tabs.currentIndex()));
  const auto height = [this] { return program_.window->ActiveChart()->height(); };
  Choose(QStringLiteral("&4"));
  QCoreApplication::processEvents();
  const int tiled = height();
  Choose(QStringLiteral("&One at a time"));
  QCoreApplication::processEvents();
  EXPECT_GT(height(), 1.8 * tiled) << "the other tiles are gone";

  program_.window->resize(600, 500);
  program_.window->close();
  const MainWindow next(program_.source, *program_.settings, program_.scratch / "d.json", {});
  EXPECT_EQ(next.size(), QSize(600, 500)) << "the place is kept";
}

// Two frames next to each other; the keys of a run refresh both, and the next run opens both.
TEST_P(MainWindowTest, TilesChartsAndOpensTheLayoutWithTheNextRun) {
  const auto bars = [this] {
    std::vector<int> shown;
    for (const ChartPane* const chart : program_.window->findChildren<ChartPane*>()) {
      if (chart->isVisible()) shown.push_back(chart->Document().Model().Series().size());
    }
    return shown;
  };
  OpenBlind(program_.folder, "SCB");
  Choose(QStringLiteral("2 &side by side"));
  EXPECT_EQ(program_.Last()["charts"], 2);
  Key(Qt::Key_2);
  QTest::qWait(2600);  // a digit right after a chart was opened may be for the dialog
  Key(Qt::Key_2);
  EXPECT_EQ(program_.Last()["event"], "interval");
  EXPECT_THAT(bars(), testing::UnorderedElementsAre(300, program_.Last()["chart"]["bars"]));

  StoreSecurity(program_.folder, {"SCB", "Bank", -1}, DailyBars(301), program_.cache);
  Chord(Qt::Key_V, Qt::Key_R);
  EXPECT_THAT(bars(), testing::Contains(301)) << "the chart that isn't active";
  Key(Qt::Key_Tab, Qt::ControlModifier);
  EXPECT_EQ(program_.Last()["active"], 0);
  EXPECT_EQ(bars().size(), 2U);

  for (const bool directly : {true, false}) {
    Chord(Qt::Key_F, Qt::Key_E);
    EXPECT_EQ(program_.Last()["charts"], 0);
    if (directly) {
      program_.window->OpenDirectly({program_.folder, "SCB", -1});
    } else {
      OpenBlind(program_.folder, "SCB");
    }
    EXPECT_EQ(program_.Last()["charts"], 2);
    EXPECT_EQ(program_.Last()["active"], 0);
    EXPECT_EQ(program_.Last()["chart"]["bars"], 301);
    EXPECT_THAT(bars(), testing::SizeIs(2));
  }
  OpenBlind(program_.folder, "ADVANC");
  EXPECT_THAT(bars(), testing::SizeIs(2)) << "next to an older one";
  Choose(QStringLiteral("&One at a time"));
  EXPECT_THAT(bars(), testing::SizeIs(1));
}

// A run feeds the series whose charts are open in its folder, also those of the layout.
TEST_P(MainWindowTest, SaysWhichSeriesAreOpen) {
  StoreSecurity(program_.folder, {"LATER", "No bars yet", -1}, {}, program_.cache);
  WriteFile(program_.folder + "/.velumar-store", "");
  const auto open = [this](const std::string& symbol) {
    program_.window->OpenDirectly({program_.folder, symbol, -1});
  };
  QSignalSpy opened(&program_.window->Charts(), &OpenCharts::SeriesOpened);
  QSignalSpy closed(&program_.window->Charts(), &OpenCharts::SeriesClosed);
  const auto numbers = [](QSignalSpy& spy) {
    std::vector<int> seen;
    while (!spy.isEmpty()) seen.push_back(spy.takeFirst().at(1).toInt());
    return seen;
  };
  open("SCB");
  OpenBlind(program_.folder, "LATER");
  EXPECT_THAT(numbers(opened), testing::ElementsAre(1, 5));
  Key(Qt::Key_W, Qt::ControlModifier);
  EXPECT_THAT(numbers(closed), testing::ElementsAre(5));
  OpenBlind(program_.folder, "LATER");
  program_.window->CloseAll();
  EXPECT_THAT(numbers(closed), testing::ElementsAre(1, 5));
  numbers(opened);
  open("ADVANC");
  EXPECT_THAT(numbers(opened), testing::ElementsAre(3, 5)) << "the layout";
  Key(Qt::Key_W, Qt::ControlModifier);
  EXPECT_EQ(program_.settings->Layout().charts.at(0).symbol, "") << "the chart that is left";
}

TEST_P(MainWindowTest, MovesOneCrosshairThroughAllFrames) {
  const auto open = [this](Frame frame) {
    program_.window->OpenDirectly({program_.folder, "SCB", 5});
    program_.window->ActiveChart()->ShowFrame(frame);
  };
  open({});
  Choose(QStringLiteral("2 s&tacked"));
  ChartPane* const hours = program_.window->ActiveChart();
  hours->ShowFrame({Frame::Unit::kMinutes, 60});
  program_.window->Act(HostAction::kNextChart);
  ChartPane* const minutes = program_.window->ActiveChart();
  ASSERT_NE(minutes, hours);
  int followed = -1;
  QObject::connect(&hours->Plot(), &ChartPlot::BarHovered, [&](int bar) { followed = bar; });
  for (ChartPane* const chart : {minutes, hours}) chart->Plot().replot();
  const QCPAxis& places = *minutes->Plot().Prices().axis(QCPAxis::atBottom);
  for (const int bar : {3, 40, 59}) {
    QTest::mouseMove(&minutes->Plot(), {static_cast<int>(places.coordToPixel(bar)), 60});
    const auto& starts = hours->Document().Model().Series().starts;
    ASSERT_GE(followed, 0);
    EXPECT_EQ(followed, std::ranges::upper_bound(starts, bar) - starts.begin() - 1);
  }
  QEvent leave(QEvent::Leave);
  QCoreApplication::sendEvent(&minutes->Plot(), &leave);
  EXPECT_EQ(followed, -1);
}

TEST_P(MainWindowTest, OpenChartsFollowTheTheme) {
  program_.window->OpenDirectly({program_.folder, "SCB", -1});
  for (const bool dark : {true, false}) {
    program_.window->FollowTheme(dark);
    QTest::qWait(50);
    const QImage picture = program_.window->ActiveChart()->grab().toImage();
    for (const QPoint place : {QPoint(3, 3), picture.rect().bottomRight() - QPoint(3, 3)}) {
      EXPECT_EQ(picture.pixelColor(place).lightness() < 128, dark);
    }
  }
}

TEST_P(MainWindowTest, RemembersTheLookAndTheFolder) {
  OpenBlind(program_.folder, "SCB");
  EXPECT_EQ(program_.settings->Options(), ChartOptions());
  for (const std::vector<Qt::Key>& entries : {std::vector{Qt::Key_B, Qt::Key_L}, {Qt::Key_V}}) {
    Key(Qt::Key_V, Qt::AltModifier);
    ASSERT_TRUE(QTest::qWaitFor([&] { return program_.window->IsMenuShown(); }, 3000));
    for (const Qt::Key entry : entries) {
      QTest::keyClick(QApplication::activePopupWidget(), entry);
    }
  }
  const ChartSettings kept;
  EXPECT_EQ(kept.Options().style, ChartStyle::kLine);
  EXPECT_FALSE(kept.Options().volume);
  EXPECT_EQ(kept.Folder().toStdString(), program_.folder);
  const ChartOptions other{ChartStyle::kArea,
                           ChartTheme::kDark,
                           true,
                           false,
                           PriceScale::kPercent,
                           true,
                           false,
                           false,
                           {},
                           ChosenIndicator::kMostHeight,
                           {{-1, Frame{Frame::Unit::kWeek}}}};
  program_.settings->SetOptions(other);
  EXPECT_EQ(ChartSettings().Options(), other);
  program_.settings->SetOptions(ChartOptions());
}

TEST(FolderCompleter, CompletesWhatIsTypedNow) {
  const ScratchFolder folder;
  for (const char* name : {"Alpha", "Beta", "Bets"}) {
    std::filesystem::create_directory(folder / name);
  }
  QLineEdit line;
  const FolderCompleter completer(line);
  line.show();
  line.activateWindow();
  line.setFocus();
  const QString parent = QString::fromStdString(folder.Sub(""));
  const auto completes = [&](const QString& typed, const QString& to) {
    line.selectAll();
    QTest::keyClicks(&line, parent + typed);
    const bool done = QTest::qWaitFor([&] { return line.text() == parent + to; }, 2000);
    if (typed == to) QTest::qWait(600);
    return done && line.text() == parent + to;
  };
  EXPECT_TRUE(completes(QStringLiteral("al"), QStringLiteral("alpha")));
  EXPECT_TRUE(completes(QStringLiteral("B"), QStringLiteral("Beta")));
  EXPECT_TRUE(completes(QStringLiteral("x"), QStringLiteral("x"))) << "no such folder";
  EXPECT_TRUE(completes(QStringLiteral("bets"), QStringLiteral("bets"))) << "already whole";
}

}  // namespace
}  // namespace velumar
