#include <gtest/gtest.h>

#include <QApplication>

#include "charthost/view/theme.h"

// One application for all tests, gone before the process ends its statics.
int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  const QApplication application(argc, argv);
  velumar::InstallStyle();
  return RUN_ALL_TESTS();
}
