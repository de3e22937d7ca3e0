#include "platform/file_lock.h"

#include "support/scratch_folder.h"

namespace velumar {
namespace {

TEST(FileLock, IsHeldByOneUntilItEnds) {
  using State = FileLock::State;
  const ScratchFolder folder;
  const auto file = folder / "running";
  WriteFile(file, "left by another machine");
  FileLock first(file);
  EXPECT_EQ(first.Held(), State::kHeld);
  EXPECT_EQ(FileLock(file).Held(), State::kHeldByAnother);
  first.Remove();
  EXPECT_FALSE(std::filesystem::exists(file));
  EXPECT_EQ(FileLock(file).Held(), State::kHeld);
  EXPECT_TRUE(std::filesystem::exists(file)) << "only Remove deletes it";
  EXPECT_EQ(FileLock(folder.Path()).Held(), State::kImpossible);
}

}  // namespace
}  // namespace velumar
