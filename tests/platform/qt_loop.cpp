#include "platform/qt_loop.h"

#include <QCoreApplication>
#include <QDeadlineTimer>

namespace velumar {

void RunEventsUntil(const std::function<bool()>& done) {
  static int count = 1;
  static char name[] = "test";
  static char* arguments[] = {name, nullptr};
  static const QCoreApplication application(count, arguments);
  const QDeadlineTimer patience(5000);
  while (!done() && !patience.hasExpired()) {
    QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
  }
}

}  // namespace velumar
