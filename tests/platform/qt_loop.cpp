#include "platform/qt_loop.h"

#include <QCoreApplication>
#include <QDeadlineTimer>

namespace velumar {

QtLoop::QtLoop() {
  static int count = 1;
  static char name[] = "test";
  static char* arguments[] = {name, nullptr};
  application_ = std::make_unique<QCoreApplication>(count, arguments);
}

QtLoop::~QtLoop() = default;

void QtLoop::RunUntil(const std::function<bool()>& done) {
  const QDeadlineTimer patience(5000);
  while (!done() && !patience.hasExpired()) {
    QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
  }
}

}  // namespace velumar
