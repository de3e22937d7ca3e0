#include <QCoreApplication>

namespace velumar {

void ProcessEvents();

void ProcessEvents() {
  static int count = 1;
  static char name[] = "test";
  static char* arguments[] = {name, nullptr};
  static const QCoreApplication application(count, arguments);
  QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
}

}  // namespace velumar
