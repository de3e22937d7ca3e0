#include <gmock/gmock.h>

#include <QtWidgets>
#include <chrono>

#include "app/services/desktop_services.h"
#include "platform/virtual_platform.h"

namespace velumar {
namespace {

using std::chrono_literals::operator""ms;

// Calls `act` with the dialog once it is open.
template <typename Dialog, typename Act>
void WhenOpen(Act act) {
  QTimer::singleShot(0, [act] {
    auto* const dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
    ASSERT_NE(dialog, nullptr);
    act(*dialog);
  });
}

struct EventLoopTest : testing::Test {
  EventLoopTest() { time.start(); }

  const std::unique_ptr<EventLoop> events = WindowEvents();
  QElapsedTimer time;
};

TEST_F(EventLoopTest, AWaitIsNeverShortAndLetsEventsRun) {
  for (int round = 0; round < 20; ++round) {
    bool ran = false;
    QTimer::singleShot(2, [&] { ran = true; });
    time.restart();
    events->WaitFor(5ms);
    EXPECT_GE(time.nsecsElapsed(), 5'000'000);
    EXPECT_TRUE(ran);
  }
}

TEST_F(EventLoopTest, EachOfNestedWaitsEndsAtItsOwnTime) {
  qint64 inner_end = 0;
  QTimer::singleShot(5, [&] {
    events->WaitFor(20ms);
    inner_end = time.elapsed();
  });
  events->WaitFor(120ms);
  EXPECT_GE(inner_end, 25);
  EXPECT_LT(inner_end, 100) << "the inner wait ends before the outer one";
  EXPECT_GE(time.elapsed(), 120);
}

TEST_F(EventLoopTest, WaitsEndWhenTheApplicationDoes) {
  QTimer::singleShot(0, [&] {
    QTimer::singleShot(0, [] { QApplication::quit(); });
    events->WaitFor(30'000ms);
  });
  EXPECT_EQ(QApplication::exec(), 0);
  EXPECT_LT(time.elapsed(), 10'000);
}

TEST(MessageBoxes, ShowATextAsItIsAndMeanTheLastAnswerWhenClosed) {
  WhenOpen<QMessageBox>([](QMessageBox& box) {
    EXPECT_EQ(box.textFormat(), Qt::PlainText);
    EXPECT_TRUE(box.windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    box.close();
  });
  EXPECT_EQ(QtMessageBoxes().Ask("Replace <b>it</b>?", {"Replace", "Cancel"}), 1U);
  WhenOpen<QMessageBox>([](QMessageBox& box) { box.buttons().front()->click(); });
  EXPECT_EQ(QtMessageBoxes().Ask("Replace <b>it</b>?", {"Replace", "Cancel"}), 0U);
}

TEST(SaveDialog, OpensInTheFolderOfTheLastFileWithAName) {
  const QTemporaryDir first;
  const QTemporaryDir second;
  MemorySettings settings;
  settings.texts["SaveFolder"] = first.path().toStdString();
  const auto choose = [&settings] {
    return QtSaveDialog(settings).ChooseFile({{"Report (*.pdf)", "pdf"}}, "Report");
  };
  WhenOpen<QFileDialog>([](QDialog& dialog) { dialog.accept(); });
  EXPECT_EQ(choose(), first.filePath(QStringLiteral("Report.pdf")).toStdString());
  WhenOpen<QFileDialog>([&](QFileDialog& dialog) {
    dialog.selectFile(second.filePath(QStringLiteral("mine.pdf")));
    static_cast<QDialog&>(dialog).accept();
  });
  EXPECT_TRUE(choose());
  WhenOpen<QFileDialog>([&](QFileDialog& dialog) {
    EXPECT_EQ(dialog.directory().absolutePath(), second.path());
    dialog.reject();
  });
  EXPECT_EQ(choose(), std::nullopt);
  // The dialog asks only about names that it knows whole.
  ASSERT_TRUE(QFile(second.filePath(QStringLiteral("v1.5.pdf"))).open(QFile::WriteOnly));
  bool asked = false;
  WhenOpen<QFileDialog>([&](QFileDialog& dialog) {
    dialog.selectFile(second.filePath(QStringLiteral("v1.5")));
    WhenOpen<QMessageBox>([&asked](QMessageBox& box) {
      asked = true;
      WhenOpen<QFileDialog>([](QDialog& again) { again.reject(); });
      box.close();
    });
    static_cast<QDialog&>(dialog).accept();
  });
  EXPECT_EQ(choose(), std::nullopt);
  EXPECT_TRUE(asked) << "the file of that name is kept";
}

// A saved place counts only if enough of the window is visible to take hold of it.
TEST(Screen, ShowsAWindowThatCanBeGrabbed) {
  const QtScreen screen;
  constexpr float kGrip = 24 * 15;
  const float right = screen.WidthTwips() - kGrip;
  const float bottom = screen.HeightTwips() - kGrip;
  EXPECT_TRUE(screen.Shows(right, bottom, 3000, 1500));
  EXPECT_TRUE(screen.Shows(kGrip - 3000, kGrip - 1500, 3000, 1500));
  EXPECT_FALSE(screen.Shows(right + 30, 0, 3000, 1500));
  EXPECT_FALSE(screen.Shows(0, bottom + 30, 3000, 1500));
}

}  // namespace
}  // namespace velumar
