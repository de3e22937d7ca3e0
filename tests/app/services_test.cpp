#include <gmock/gmock.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QLabel>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QTimer>
#include <chrono>

#include "app/services/dialogs.h"
#include "app/services/event_loop.h"
#include "app/services/screen.h"
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

class EventLoopTest : public ::testing::Test {
 protected:
  EventLoopTest() { time.start(); }

  QtEventLoop events;
  QElapsedTimer time;
};

TEST_F(EventLoopTest, AWaitIsNeverShortAndLetsEventsRun) {
  for (int round = 0; round < 20; ++round) {
    bool ran = false;
    QTimer::singleShot(2, [&] { ran = true; });
    time.restart();
    events.WaitFor(5ms);
    EXPECT_GE(time.nsecsElapsed(), 5'000'000);
    EXPECT_TRUE(ran);
  }
}

TEST_F(EventLoopTest, EachOfNestedWaitsEndsAtItsOwnTime) {
  qint64 inner_end = 0;
  QTimer::singleShot(5, [&] {
    events.WaitFor(20ms);
    inner_end = time.elapsed();
  });
  events.WaitFor(120ms);
  EXPECT_GE(inner_end, 25);
  EXPECT_LT(inner_end, 100) << "the inner wait ends before the outer one";
  EXPECT_GE(time.elapsed(), 120);

  time.restart();
  QTimer::singleShot(5, [&] { events.WaitFor(60ms); });
  events.WaitFor(20ms);
  EXPECT_GE(time.elapsed(), 65) << "the outer wait can't return before the inner one";
}

TEST_F(EventLoopTest, WaitsEndWhenTheApplicationDoes) {
  QTimer::singleShot(0, [&] {
    QTimer::singleShot(0, [] { QApplication::quit(); });
    events.WaitFor(30'000ms);
  });
  EXPECT_EQ(QApplication::exec(), 0);
  EXPECT_LT(time.elapsed(), 10'000);
}

TEST(MessageBoxes, ShowATextAsItIs) {
  const std::string text = "& <b>so on</b> " + std::string(300, 'x');
  WhenOpen<QMessageBox>([&](QMessageBox& box) {
    EXPECT_EQ(box.text().toStdString(), text);
    EXPECT_EQ(box.textFormat(), Qt::PlainText);
    EXPECT_TRUE(box.windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    EXPECT_TRUE(box.findChild<QLabel*>(QStringLiteral("qt_msgbox_label"))->wordWrap());
    box.accept();
  });
  QtMessageBoxes().Show(text, BoxIcon::kExclamation);
}

TEST(MessageBoxes, ClosingAQuestionMeansItsLastAnswer) {
  WhenOpen<QMessageBox>([](QMessageBox& box) { box.close(); });
  EXPECT_EQ(QtMessageBoxes().Ask("Replace it?", {"Replace", "Cancel"}), 1U);
  WhenOpen<QMessageBox>([](QMessageBox& box) { box.buttons().front()->click(); });
  EXPECT_EQ(QtMessageBoxes().Ask("Replace it?", {"Replace", "Cancel"}), 0U);
}

TEST(SaveDialog, OpensInTheFolderOfTheLastFileWithAName) {
  const QTemporaryDir first;
  const QTemporaryDir second;
  const std::vector<FileForm> forms = {{"Report (*.pdf)", "pdf"}};
  MemorySettings settings;
  settings.texts["SaveFolder"] = first.path().toStdString();
  QtSaveDialog dialogs(settings);
  WhenOpen<QFileDialog>([](QDialog& dialog) { dialog.accept(); });
  EXPECT_EQ(dialogs.ChooseFile(forms, "Report"),
            (first.path() + QStringLiteral("/Report.pdf")).toStdString());
  WhenOpen<QFileDialog>([&](QFileDialog& dialog) {
    dialog.selectFile(second.filePath(QStringLiteral("mine.pdf")));
    static_cast<QDialog&>(dialog).accept();
  });
  EXPECT_TRUE(dialogs.ChooseFile(forms, "Report").has_value());
  EXPECT_EQ(settings.texts["SaveFolder"], second.path().toStdString());
  WhenOpen<QFileDialog>([&](QFileDialog& dialog) {
    EXPECT_EQ(dialog.directory().absolutePath(), second.path());
    dialog.reject();
  });
  EXPECT_EQ(QtSaveDialog(settings).ChooseFile(forms, "Report"), std::nullopt);
}

// A saved place counts only if enough of the window is visible to take hold of it.
TEST(Screen, ShowsAWindowThatCanBeGrabbed) {
  const QtScreen screen;
  constexpr float kWidth = 3000;
  constexpr float kHeight = 1500;
  constexpr float kGrip = 24 * 15;
  const float right = screen.WidthTwips();
  const float bottom = screen.HeightTwips();
  EXPECT_TRUE(screen.Shows(right - kGrip, bottom - kGrip, kWidth, kHeight));
  EXPECT_TRUE(screen.Shows(kGrip - kWidth, kGrip - kHeight, kWidth, kHeight));
  EXPECT_FALSE(screen.Shows(right - kGrip + 30, 0, kWidth, kHeight));
  EXPECT_FALSE(screen.Shows(0, bottom - kGrip + 30, kWidth, kHeight));
}

}  // namespace
}  // namespace velumar
