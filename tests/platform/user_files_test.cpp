#include "platform/user_files.h"

#include "support/scratch_folder.h"
#include "user_tree.h"

namespace velumar {
namespace {

namespace fs = std::filesystem;

struct UserFiles : testing::Test {
  void Install() {
    fs::create_directories(tree.program);
    fs::create_directories(tree.shared_samples);
    WriteFile(tree.shared_samples / "MASTER", "shared");
  }

  ScratchFolder folder;
  UserTree tree{folder.Path()};
};

TEST_F(UserFiles, ABuiltProgramKeepsEverythingInItsFolder) {
  fs::create_directories(tree.program / "samples");
  EXPECT_EQ(SampleDirectory(tree.program), tree.program / "samples");
  EXPECT_EQ(LedgerFile(tree.program), tree.program / "Portfolio.mdb");
  EXPECT_FALSE(fs::exists(tree.own));
}

TEST_F(UserFiles, AnInstalledProgramGivesEachUserSamplesAndALedgerOfTheirOwn) {
  Install();
  // Even if the user may write to the program's folder, as the administrator may.
  EXPECT_EQ(LedgerFile(tree.program), tree.own / "Portfolio.mdb");
  EXPECT_EQ(SampleDirectory(tree.program), tree.own / "samples");
  EXPECT_EQ(ReadFile(tree.own / "samples" / "MASTER"), "shared");

  WriteFile(tree.own / "samples" / "MASTER", "with an import");
  EXPECT_EQ(SampleDirectory(tree.program), tree.own / "samples");
  EXPECT_EQ(ReadFile(tree.own / "samples" / "MASTER"), "with an import");
}

TEST_F(UserFiles, ACopyThatFailsIsAnError) {
  Install();
  WriteFile(tree.own.parent_path(), "a file where the folder should be");
  EXPECT_THROW(SampleDirectory(tree.program), fs::filesystem_error);
}

}  // namespace
}  // namespace velumar
