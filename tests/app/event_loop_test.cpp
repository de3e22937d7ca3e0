#include <gmock/gmock.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QLabel>
#include <QMessageBox>
#include <QTimer>
#include <chrono>

#include "app/services/dialogs.h"
#include "app/services/event_loop.h"
#include "app/services/screen.h"

namespace velumar {
namespace {

using std::chrono_literals::operator""ms;

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
  EXPECT_LT(inner_end, 100) << "the inner wait doesn't last as long as the outer";
  EXPECT_GE(time.elapsed(), 120);

  time.restart();
  QTimer::singleShot(5, [&] { events.WaitFor(60ms); });
  events.WaitFor(20ms);
  EXPECT_GE(time.elapsed(), 65) << "the outer one can't come back before the inner";
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
  std::string text = "& <b>so on</b> ";
  text.append(300, 'x');
  QTimer::singleShot(0, [&] {
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->text().toStdString(), text);
    EXPECT_EQ(box->textFormat(), Qt::PlainText);
    EXPECT_TRUE(box->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    EXPECT_TRUE(box->findChild<QLabel*>(QStringLiteral("qt_msgbox_label"))->wordWrap());
    box->accept();
  });
  QtMessageBoxes().Show(text, BoxIcon::kExclamation);
}

// Whether a kept place counts: enough of the window must be in sight to take hold of it.
TEST(Screen, ShowsAWindowOfWhichAHandfulIsInSight) {
  const QtScreen screen;
  constexpr float kWidth = 3000;
  constexpr float kHeight = 1500;
  constexpr float kHandful = 24 * 15;
  const float right = screen.WidthTwips();
  const float bottom = screen.HeightTwips();
  EXPECT_TRUE(screen.Shows(right - kHandful, bottom - kHandful, kWidth, kHeight));
  EXPECT_TRUE(screen.Shows(kHandful - kWidth, kHandful - kHeight, kWidth, kHeight));
  EXPECT_FALSE(screen.Shows(right - kHandful + 30, 0, kWidth, kHeight));
  EXPECT_FALSE(screen.Shows(0, bottom - kHandful + 30, kWidth, kHeight));
}

}  // namespace
}  // namespace velumar
