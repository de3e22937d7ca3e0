#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "marketdata/directory_editor.h"
#include "marketdata/directory_lock.h"
#include "marketdata/index_cache.h"
#include "marketdata/market_files.h"
#include "marketdata/metalib_reader.h"
#include "marketdata/metalib_writer.h"

namespace velumar {

namespace {

TEST(DirectoryLock, KeepsOthersOutAndDiesWithItsHolder) {
  const ScratchFolder directory;
  directory.Write("MASTER", Master({{}}));
  int held[2];
  ASSERT_EQ(pipe(held), 0);
  IndexCache cache;
  MetaLibWriter writer(cache);
  const pid_t child = fork();
  if (child == 0) {
    writer.OpenDirectory(directory.Text());
    if (write(held[1], "x", 1) == 1) pause();
    _exit(0);
  }
  char signal = 0;
  ASSERT_EQ(read(held[0], &signal, 1), 1);
  EXPECT_TRUE(writer.IsDirectoryInUse(directory.Text()));
  std::string text;
  EXPECT_EQ(ErrorOf([&] { writer.OpenDirectory(directory.Text()); }, &text),
            MetaLibError::kDirectoryInUse);
  EXPECT_THAT(text, testing::HasSubstr(directory.Text()));
  EXPECT_EQ(ErrorOf([&] {
              StoreSecurity(directory.Text(), {"BBB", "", -1}, {}, cache);
            }),
            MetaLibError::kDirectoryInUse);
  EXPECT_EQ(ReadBars(directory).size(), 0U) << "readers don't ask";
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  EXPECT_FALSE(writer.IsDirectoryInUse(directory.Text()));
  writer.OpenDirectory(directory.Text());
  EXPECT_FALSE(writer.IsDirectoryInUse(directory.Text())) << "by another writer";
  MetaLibWriter other(cache);
  EXPECT_TRUE(other.IsDirectoryInUse(directory.Text()));
  EXPECT_FALSE(other.IsDirectoryInUse(directory.Text() + "/nowhere"));
}

TEST(DirectoryLock, AFileThatIsNoLockFileIsNamedAndNotWaitedFor) {
  for (const bool pipe : {true, false}) {
    const ScratchFolder directory;
    directory.Write("MASTER", Master({{}}));
    const auto lock = directory / DirectoryLock::kFileName;
    if (pipe) {
      ASSERT_EQ(mkfifo(lock.c_str(), 0600), 0);
    } else {
      std::filesystem::create_symlink(directory / "elsewhere", lock);
    }
    IndexCache cache;
    MetaLibWriter writer(cache);
    std::string text;
    EXPECT_EQ(ErrorOf([&] { writer.OpenDirectory(directory.Text()); }, &text),
              MetaLibError::kWriteFailed);
    EXPECT_THAT(text, testing::HasSubstr(pipe ? "not a regular file" : "link"));
    if (pipe) {
      EXPECT_EQ(ErrorOf([&] { writer.IsDirectoryInUse(directory.Text()); }),
                MetaLibError::kReadFailed);
    }
    EXPECT_FALSE(std::filesystem::exists(directory / "elsewhere"));
  }
}

}  // namespace

}  // namespace velumar
