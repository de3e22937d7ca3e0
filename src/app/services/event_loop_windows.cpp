#include <QCoreApplication>
#include <QEvent>

#include "app/services/desktop_services.h"
#include "platform/windows/waits.h"

namespace velumar {

namespace {

// Waits don't notice by themselves that the application quits.
class QtEventLoop : public QObject, public EventLoop {
 public:
  QtEventLoop() { qApp->installEventFilter(this); }

  void ProcessPending() override { QCoreApplication::processEvents(); }
  void WaitFor(std::chrono::milliseconds time) override {
    const auto end = std::chrono::steady_clock::now() + time;
    const auto wanted = [this] { return !quits_; };
    WaitableTimer(time).Wait([] { QCoreApplication::processEvents(); }, wanted);
    // The timer's clock is coarser than steady_clock.
    while (wanted() && std::chrono::steady_clock::now() < end) QCoreApplication::processEvents();
  }
  // None of our own events may run during the wait.
  void Sleep(std::chrono::milliseconds time) override { WaitServingOthers(time); }
  std::chrono::milliseconds Now() const override { return SteadyNow(); }

 protected:
  bool eventFilter(QObject* receiver, QEvent* event) override {
    quits_ = quits_ || (receiver == qApp && event->type() == QEvent::Quit);
    return false;
  }

 private:
  bool quits_ = false;
};

}  // namespace

std::unique_ptr<EventLoop> WindowEvents() { return std::make_unique<QtEventLoop>(); }

}  // namespace velumar
