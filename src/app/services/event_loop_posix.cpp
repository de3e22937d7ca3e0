#include "app/services/event_loop.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTimer>
#include <thread>

namespace velumar {

// Not needed: an event loop of the toolkit ends with the application.
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
  // A timer may fire up to a millisecond early. Then it is started once more.
  QObject::connect(&timer, &QTimer::timeout, &loop, [&] {
    if (end.hasExpired()) {
      loop.quit();
    } else {
      timer.start(1);
    }
  });
  timer.start(time);
  loop.exec();
}

void QtEventLoop::Sleep(std::chrono::milliseconds time) { std::this_thread::sleep_for(time); }

}  // namespace velumar
