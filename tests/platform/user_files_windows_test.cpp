#include <windows.h>

#include "platform/temp_folder.h"
#include "platform/user_files.h"

namespace velumar {
namespace {

namespace fs = std::filesystem;

// A folder that was unpacked, or what the installer lays down.
class UserFiles : public testing::Test {
 protected:
  void SetUp() override {
    ::SetEnvironmentVariableW(L"LOCALAPPDATA", (tree / "home").c_str());
    fs::create_directories(program);
  }
  void TearDown() override { ::SetEnvironmentVariableW(L"LOCALAPPDATA", nullptr); }

  void LayDown(const fs::path& samples) {
    fs::create_directories(samples);
    WriteFile(samples / "MASTER", "shared");
  }

  TempFolder tree;
  fs::path program = tree / "program";
  fs::path own = tree / "home" / "Velumar";
};

TEST_F(UserFiles, AnUnpackedProgramKeepsEverythingBesideItself) {
  LayDown(program / "samples");
  EXPECT_EQ(SampleDirectory(program), program / "samples");
  EXPECT_EQ(LedgerFile(program), program / "Portfolio.mdb");
  EXPECT_FALSE(fs::exists(own));
}

TEST_F(UserFiles, AnInstalledProgramKeepsNothingOfTheUsersInItsFolder) {
  LayDown(program / "share" / "samples");
  EXPECT_EQ(LedgerFile(program), own / "Portfolio.mdb");
  EXPECT_EQ(SampleDirectory(program), own / "samples");
  EXPECT_EQ(ReadFile(own / "samples" / "MASTER"), "shared");

  WriteFile(own / "samples" / "MASTER", "with an import");
  EXPECT_EQ(SampleDirectory(program), own / "samples");
  EXPECT_EQ(ReadFile(own / "samples" / "MASTER"), "with an import") << "a later start leaves it";
}

}  // namespace
}  // namespace velumar
