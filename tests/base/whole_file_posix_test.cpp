#include <sys/stat.h>
#include <unistd.h>

#include "base/whole_file.h"
#include "support/scratch_folder.h"
#include "support/traced_child.h"

namespace velumar {
namespace {

TEST(WholeFile, IsFlushedBeforeTheRenameAndTheFolderAfterIt) {
  const ScratchFolder folder;
  const std::string calls = DiskCallsOf([&] { ReplaceWholeFile(folder / "file", "new"); });
  if (calls.empty()) GTEST_SKIP() << "no permission to trace a process";
  EXPECT_EQ(calls, "WFRF");
}

TEST(WholeFile, KeepsLinksAndPermissionsAndRefusesPipes) {
  const ScratchFolder folder;
  folder.Write("real", "old");
  ASSERT_EQ(chmod((folder / "real").c_str(), 0640), 0);
  std::filesystem::create_symlink("real", folder / "link");
  ReplaceWholeFile(folder / "link", "new");
  EXPECT_TRUE(IsLink(folder / "link"));
  EXPECT_EQ(folder.Read("real"), "new");
  struct stat status {};
  ASSERT_EQ(stat((folder / "real").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, 0640U);
  ASSERT_EQ(chmod((folder / "real").c_str(), 0440), 0);
  chmod(folder.Path().c_str(), 0777);
  const auto replace = [&] {  // root may write to any file
    if (getuid() == 0 && setuid(65534) != 0) return 1;
    if (access(folder.Path().c_str(), X_OK) != 0) return 1;  // nobody else may reach it
    try {
      ReplaceWholeFile(folder / "real", "newer");
      return 0;
    } catch (const FileError&) {
      return 1;
    }
  };
  EXPECT_EXIT(_exit(replace()), testing::ExitedWithCode(1), "");
  EXPECT_EQ(folder.Read("real"), "new") << "a rename would replace what may not be written";
  ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
  EXPECT_THROW(ReplaceWholeFile(folder / "pipe", "x"), FileError);
  EXPECT_THROW(ReadWholeFile(folder / "pipe", 9), FileError);
}

// A disk that fails at any call leaves the old file or the new one, and no draft.
TEST(WholeFile, IsTheOldOrTheNewOneWhateverFails) {
  if (!CanTrace()) GTEST_SKIP() << "no permission to trace a process";
  int refused = 0;
  for (int number = 1, reached = 1; reached != 0; ++number) {
    const ScratchFolder folder;
    folder.Write("file", "old");
    const FailedWork failed = FailAt(number, ENOSPC, false, [&] {
      try {
        ReplaceWholeFile(folder / "file", "new");
        return 0;
      } catch (const FileError&) {
        return 2;
      }
    });
    reached = failed.reached ? 1 : 0;
    const bool done = failed.exit_code == 0;
    EXPECT_EQ(folder.Read("file"), done ? "new" : "old") << "call " << number;
    EXPECT_EQ(folder.Names().size(), 1U) << "call " << number;
    if (!done) ++refused;
  }
  EXPECT_EQ(refused, 4) << "creating, writing, flushing or renaming the draft";
}

}  // namespace
}  // namespace velumar
