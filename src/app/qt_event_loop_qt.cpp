#include "app/qt_event_loop.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTimer>
#include <thread>

namespace velumar {

// A loop of the toolkit ends with the application.
class QtEventLoop::QuitWatch {};

QtEventLoop::QtEventLoop() = default;

QtEventLoop::~QtEventLoop() = default;

void QtEventLoop::ProcessPending() { QCoreApplication::processEvents(); }

void QtEventLoop::WaitFor(std::chrono::milliseconds time) {
  const QDeadlineTimer end(time, Qt::PreciseTimer);
  QEventLoop loop;
  QTimer timer;
  timer.setTimerType(Qt::PreciseTimer);
  timer.setSingleShot(true);
  bool due = false;
  // A timer may fire within the millisecond before its time: then it runs once more.
  QObject::connect(&timer, &QTimer::timeout, &loop, [&] {
    due = end.hasExpired();
    if (due) {
      loop.quit();
    } else {
      timer.start(1);
    }
  });
  timer.start(time);
  loop.exec();
  // Ended by the application, which is quitting: there is nothing left to wait for.
  if (!due) timer.stop();
}

void QtEventLoop::Sleep(std::chrono::milliseconds time) { std::this_thread::sleep_for(time); }

}  // namespace velumar
