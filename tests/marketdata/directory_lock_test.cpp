#include "marketdata/directory_lock.h"

#include <sys/stat.h>

#include "marketdata/market_files.h"

namespace velumar {

namespace {

TEST(DirectoryLock, APipeInItsPlaceIsRefusedAtOnce) {
  const ScratchFolder directory;
  ASSERT_EQ(mkfifo((directory / DirectoryLock::kFileName).c_str(), 0600), 0);
  std::string text;
  EXPECT_EQ(ErrorOf([&] { DirectoryLock::TryHold(directory.Text()); }, &text),
            MetaLibError::kWriteFailed);
  EXPECT_THAT(text, testing::HasSubstr("not a regular file"));
}

}  // namespace

}  // namespace velumar
