#include <QCoreApplication>
#include <QEvent>

#include "app/services/event_loop.h"
#include "platform/windows/waits.h"

namespace velumar {

class QtEventLoop::QuitWatch : public QObject {
 public:
  QuitWatch() { qApp->installEventFilter(this); }

  bool Quits() const { return quits_; }

 protected:
  bool eventFilter(QObject* receiver, QEvent* event) override {
    quits_ = quits_ || (receiver == qApp && event->type() == QEvent::Quit);
    return false;
  }

 private:
  bool quits_ = false;
};

QtEventLoop::QtEventLoop() : quit_watch_(std::make_unique<QuitWatch>()) {}

QtEventLoop::~QtEventLoop() = default;

void QtEventLoop::ProcessPending() { QCoreApplication::processEvents(); }

void QtEventLoop::WaitFor(std::chrono::milliseconds time) {
  const auto end = std::chrono::steady_clock::now() + time;
  const auto wanted = [this] { return !quit_watch_->Quits(); };
  WaitableTimer(time).Wait([] { QCoreApplication::processEvents(); }, wanted);
  // The timer's clock is coarser than steady_clock.
  while (wanted() && std::chrono::steady_clock::now() < end) {
    QCoreApplication::processEvents();
  }
}

// None of our own events may run during the wait.
void QtEventLoop::Sleep(std::chrono::milliseconds time) { WaitServingOthers(time); }

}  // namespace velumar
