#include <gmock/gmock.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QLabel>
#include <QMessageBox>
#include <QTimer>
#include <chrono>

#include "app/qt_event_loop.h"
#include "app/qt_message_boxes.h"
#include "app/qt_screen.h"

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

TEST_F(EventLoopTest, PendingEventsRunWithoutAWait) {
  bool ran = false;
  QTimer::singleShot(0, [&] { ran = true; });
  events.ProcessPending();
  EXPECT_TRUE(ran);
}

TEST(MessageBoxes, AreReadableAndInFront) {
  const std::string text =
      "The directory /home/trader/Market Data/ can't be listed: " + std::string(300, 'x') +
      " & <b>so on</b>";
  QString shown;
  bool on_top = false;
  QTimer::singleShot(0, [&] {
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    ASSERT_NE(box, nullptr);
    shown = box->text();
    on_top = box->windowFlags().testFlag(Qt::WindowStaysOnTopHint);
    EXPECT_EQ(box->icon(), QMessageBox::Warning);
    EXPECT_EQ(box->textFormat(), Qt::PlainText);
    EXPECT_TRUE(box->textInteractionFlags().testFlag(Qt::TextSelectableByMouse));
    EXPECT_TRUE(box->findChild<QLabel*>(QStringLiteral("qt_msgbox_label"))->wordWrap());
    box->accept();
  });
  QtMessageBoxes().Show(text, BoxIcon::kExclamation);
  EXPECT_EQ(shown.toStdString(), text);
  EXPECT_TRUE(on_top);
}

TEST(Screen, IsMeasuredInFifteenthsOfALogicalPixel) {
  const QtScreen screen;
  const QSize size = QApplication::primaryScreen()->geometry().size();
  EXPECT_EQ(screen.WidthTwips(), static_cast<float>(size.width() * 15));
  EXPECT_EQ(screen.HeightTwips(), static_cast<float>(size.height() * 15));
}

}  // namespace
}  // namespace velumar
