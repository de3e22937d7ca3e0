#include "charthost/view/main_window.h"

#include <QTest>
#include <QtWidgets>
#include <algorithm>

#include "charthost/chart_windows.h"
#include "charthost/view/chart_pane.h"
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

TEST_P(MainWindowTest, LetsAPersonChooseARowOrAnInterval) {
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

  Chord(Qt::Key_F, Qt::Key_O);
  Key(Qt::Key_Return);  // the folder that was used last
  Type("SCB");
  Key(Qt::Key_Tab);
  Key(Qt::Key_5);
  Key(Qt::Key_Return);
  EXPECT_EQ(program_.Last()["charts"], 2);
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

TEST_P(MainWindowTest, RemembersTheLookAndTheFolder) {
  OpenBlind(program_.folder, "SCB");
  EXPECT_EQ(program_.settings->Options(), ChartOptions());
  for (const Qt::Key entry : {Qt::Key_L, Qt::Key_V}) {
    Key(Qt::Key_V, Qt::AltModifier);
    ASSERT_TRUE(QTest::qWaitFor([&] { return program_.window->IsMenuShown(); }, 3000));
    QTest::keyClick(QApplication::activePopupWidget(), entry);
  }
  const ChartSettings kept;
  EXPECT_EQ(kept.Options().style, ChartStyle::kLine);
  EXPECT_FALSE(kept.Options().volume);
  EXPECT_EQ(kept.Folder().toStdString(), program_.folder);
  program_.settings->SetOptions(ChartOptions());
}

}  // namespace
}  // namespace velumar
