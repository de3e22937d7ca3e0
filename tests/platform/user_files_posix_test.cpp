#include "platform/user_files.h"

#include <cstdlib>

#include "platform/temp_folder.h"

namespace velumar {
namespace {

namespace fs = std::filesystem;

// A tree as it was built, or one below a prefix that all users share.
class UserFiles : public testing::Test {
 protected:
  void SetUp() override { setenv("XDG_DATA_HOME", (tree / "home").c_str(), 1); }
  void TearDown() override { unsetenv("XDG_DATA_HOME"); }

  fs::path Made(const fs::path& folder) {
    fs::create_directories(folder);
    return folder;
  }
  fs::path InstalledProgram() {
    WriteFile(Made(tree / "usr/share/velumar/samples") / "MASTER", "shared");
    return Made(tree / "usr/lib/velumar");
  }

  TempFolder tree;
  fs::path own = tree / "home/velumar";
};

TEST_F(UserFiles, ABuiltProgramKeepsEverythingBesideItself) {
  const fs::path program = Made(tree / "bin");
  Made(program / "samples");
  EXPECT_EQ(SampleDirectory(program), program / "samples");
  EXPECT_EQ(LedgerFile(program), program / "Portfolio.mdb");
  EXPECT_FALSE(fs::exists(own));
}

TEST_F(UserFiles, AnInstalledProgramGivesEachUserSamplesAndALedgerOfTheirOwn) {
  const fs::path program = InstalledProgram();
  // Even for a user who might write beside the program, such as the administrator.
  EXPECT_EQ(LedgerFile(program), own / "Portfolio.mdb");
  EXPECT_EQ(SampleDirectory(program), own / "samples");
  EXPECT_EQ(ReadFile(own / "samples/MASTER"), "shared");

  WriteFile(own / "samples/MASTER", "with an import");
  EXPECT_EQ(SampleDirectory(program), own / "samples");
  EXPECT_EQ(ReadFile(own / "samples/MASTER"), "with an import") << "a later start leaves it alone";
}

TEST_F(UserFiles, ACopyThatFailsIsToldAndLeavesNothingThatLooksWhole) {
  const fs::path program = InstalledProgram();
  WriteFile(tree / "home", "a file where the folder should be");
  EXPECT_THROW(SampleDirectory(program), fs::filesystem_error);
}

}  // namespace
}  // namespace velumar
