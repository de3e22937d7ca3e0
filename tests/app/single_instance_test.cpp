#include "app/wiring/single_instance.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>
#include <filesystem>
#include <fstream>

namespace velumar {
namespace {

namespace fs = std::filesystem;

TEST(SingleInstance, OneHasTheFolderUntilItEnds) {
  const QTemporaryDir folder;
  const fs::path running = fs::path(folder.path().toStdString()) / "running";
  {
    SingleInstance first(folder.path());
    EXPECT_TRUE(first.First());
    EXPECT_FALSE(SingleInstance(folder.path()).First());
    EXPECT_TRUE(fs::exists(running)) << "the second start leaves the lock of the first";
    first.Release();
    EXPECT_FALSE(fs::exists(running));
    EXPECT_TRUE(SingleInstance(folder.path()).First());
  }
  EXPECT_FALSE(fs::exists(running));

  SingleInstance deleted(folder.path());
  fs::remove(running);
  const SingleInstance other(folder.path());
  deleted.Release();
  EXPECT_TRUE(fs::exists(running)) << "the lock of the other one";
}

// What a folder may hold that was copied, belongs to someone else or lies on a read-only disk.
TEST(SingleInstance, StartsInAnyFolderThatNoneRunsIn) {
  const QTemporaryDir folder;
  const fs::path base = folder.path().toStdString();
  const auto starts = [&](const fs::path& settings) {
    return SingleInstance(QString::fromStdString(settings.string())).First();
  };
  fs::create_directories(base / "copied");
  std::ofstream(base / "copied/running") << "4711\nvelumar\nanother-machine\n";
  EXPECT_TRUE(starts(base / "copied"));
  std::ofstream(base / "copied/running") << "1\nvelumar\n";
  fs::permissions(base / "copied/running", fs::perms::owner_read);
  EXPECT_TRUE(starts(base / "copied"));
  fs::create_directories(base / "folder/running");
  EXPECT_TRUE(starts(base / "folder"));
  EXPECT_TRUE(fs::exists(base / "folder/running"));
  EXPECT_TRUE(starts("/proc/velumar/settings")) << "a folder that can't be made";
  EXPECT_TRUE(starts("/proc/self")) << "a folder that can't be written";
}

}  // namespace
}  // namespace velumar
