#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "marketdata/directory_editor.h"
#include "marketdata/directory_lock.h"
#include "marketdata/market_files.h"
#include "marketdata/metalib_writer.h"

namespace velumar {

namespace {

TEST(DirectoryLock, ExcludesOthersUntilItsHolderDies) {
  const ScratchFolder directory;
  directory.Write("MASTER", Master({{}}));
  const std::string path = directory.Text();
  int held[2];
  ASSERT_EQ(pipe(held), 0);
  IndexCache cache;
  MetaLibWriter writer(cache);
  const pid_t child = fork();
  if (child == 0) {
    writer.OpenDirectory(path);
    if (write(held[1], "x", 1) == 1) pause();
    _exit(0);
  }
  char signal = 0;
  ASSERT_EQ(read(held[0], &signal, 1), 1);
  EXPECT_TRUE(writer.IsDirectoryInUse(path));
  std::string text;
  EXPECT_EQ(ErrorOf([&] { writer.OpenDirectory(path); }, &text), MetaLibError::kDirectoryInUse);
  EXPECT_THAT(text, testing::HasSubstr(path));
  EXPECT_EQ(ErrorOf([&] {
              StoreSecurity(path, {"BBB", "", -1}, {}, cache);
            }),
            MetaLibError::kDirectoryInUse);
  EXPECT_EQ(ReadBars(directory).size(), 0U) << "readers ignore the lock";
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  writer.OpenDirectory(path);
  EXPECT_FALSE(writer.IsDirectoryInUse(path)) << "by another writer";
  EXPECT_TRUE(MetaLibWriter(cache).IsDirectoryInUse(path));
}

TEST(DirectoryLock, APipeOrALinkInItsPlaceIsRefusedAtOnce) {
  for (const bool pipe : {true, false}) {
    const ScratchFolder directory;
    const auto lock = directory / DirectoryLock::kFileName;
    if (pipe) {
      ASSERT_EQ(mkfifo(lock.c_str(), 0600), 0);
    } else {
      std::filesystem::create_symlink(directory / "elsewhere", lock);
    }
    std::string text;
    EXPECT_EQ(ErrorOf([&] { DirectoryLock::TryHold(directory.Text()); }, &text),
              MetaLibError::kWriteFailed);
    EXPECT_THAT(text, testing::HasSubstr(pipe ? "not a regular file" : "link"));
    EXPECT_FALSE(std::filesystem::exists(directory / "elsewhere"));
  }
}

}  // namespace

}  // namespace velumar
