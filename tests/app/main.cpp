#include <gtest/gtest.h>

#include <QApplication>

int main(int argument_count, char** arguments) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  testing::InitGoogleTest(&argument_count, arguments);
  const QApplication application(argument_count, arguments);
  QApplication::setQuitOnLastWindowClosed(false);
  return RUN_ALL_TESTS();
}
