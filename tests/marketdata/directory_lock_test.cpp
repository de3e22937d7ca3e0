#include "marketdata/directory_lock.h"

#include <sys/stat.h>

#include "marketdata/market_files.h"

namespace velumar {

namespace {

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
