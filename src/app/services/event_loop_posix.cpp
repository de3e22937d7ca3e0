#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTimer>
#include <thread>

#include "app/services/desktop_services.h"

namespace velumar {

namespace {

// An event loop of the toolkit ends with the application.
class QtEventLoop : public EventLoop {
 public:
  void ProcessPending() override { QCoreApplication::processEvents(); }
  void WaitFor(std::chrono::milliseconds time) override {
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
  void Sleep(std::chrono::milliseconds time) override { std::this_thread::sleep_for(time); }
  std::chrono::milliseconds Now() const override { return SteadyNow(); }
};

}  // namespace

std::unique_ptr<EventLoop> WindowEvents() { return std::make_unique<QtEventLoop>(); }

}  // namespace velumar
