#include "app/single_instance.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

namespace velumar {
namespace {

// A lock as a crash leaves it: still there, naming the process that had it.
void LeaveLock(const QString& file) {
  const QString aside = file + QStringLiteral(".aside");
  {
    QLockFile lock(file);
    lock.setStaleLockTime(0);
    ASSERT_TRUE(lock.tryLock(0));
    ASSERT_TRUE(QFile::copy(file, aside));
  }
  ASSERT_TRUE(QFile::rename(aside, file));
}

TEST(SingleInstance, StartsOverALockThatNamesItsOwnProcessNumber) {
  const QTemporaryDir folder;
  LeaveLock(folder.filePath(QStringLiteral("running")));
  EXPECT_TRUE(SingleInstance(folder.path()).First());
}

}  // namespace
}  // namespace velumar
