#include "platform/user_files.h"

#include "platform/file_lock.h"
#include "support/scratch_folder.h"
#include "system_driver.h"

namespace velumar {
namespace {

namespace fs = std::filesystem;

TEST(UserFiles, AreNextToTheProgramUntilItIsInstalled) {
  const ScratchFolder folder;
  const fs::path program = folder / kProgramFolder;
  const fs::path own = folder / kOwnFolder;
  SetHome(own.parent_path());
  fs::create_directories(program / "samples");
  EXPECT_EQ(SampleDirectory(program), program / "samples");
  EXPECT_EQ(LedgerFile(program), program / "Portfolio.mdb");
  EXPECT_FALSE(fs::exists(own));

  fs::remove(program / "samples");
  fs::create_directories(folder / kSharedSamples);
  WriteFile(folder / kSharedSamples / "MASTER", "shared");
  // Even if the user may write to the program's folder, as the administrator may.
  EXPECT_EQ(LedgerFile(program), own / "Portfolio.mdb");
  EXPECT_EQ(SampleDirectory(program), own / "samples");
  EXPECT_EQ(ReadFile(own / "samples" / "MASTER"), "shared");
  WriteFile(own / "samples" / "MASTER", "with an import");
  EXPECT_EQ(SampleDirectory(program), own / "samples");
  EXPECT_EQ(ReadFile(own / "samples" / "MASTER"), "with an import");
}

TEST(FileLock, IsHeldByOneObjectUntilItEnds) {
  using State = FileLock::State;
  const ScratchFolder folder;
  const auto file = folder / "running";
  WriteFile(file, "left by another machine");
  FileLock first(file);
  EXPECT_EQ(first.Held(), State::kHeld);
  EXPECT_EQ(FileLock(file).Held(), State::kHeldByAnother);
  first.Remove();
  EXPECT_FALSE(fs::exists(file));
  EXPECT_EQ(FileLock(file).Held(), State::kHeld);
  EXPECT_TRUE(fs::exists(file)) << "only Remove deletes it";
  EXPECT_EQ(FileLock(folder.Path()).Held(), State::kImpossible);
}

}  // namespace
}  // namespace velumar
