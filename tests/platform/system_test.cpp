// What each system keeps for a user: registry, files and locks. system_driver.h prepares them.
#include "platform/file_lock.h"
#include "platform/journal_picture.h"
#include "platform/user_files.h"
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

TEST(JournalPicture, IsNamedAfterItsOrderInAnExistingFolder) {
  const ScratchFolder folder;
  const fs::path good = JournalPicture(folder / "Portfolio.mdb", 12, 3);
  EXPECT_EQ(good, folder / "Journal" / "Portfolio-12-3.png");
  const std::string longest(247, 'x');
  EXPECT_TRUE(IsJournalPicture(good.parent_path() / (longest + "-1-1.png")));
  for (const auto& other :
       std::vector<std::string>{"Journal/x" + longest + "-1-1.png", "Journal/a-0-1.png",
                                "Journal/a-1.png", "a-1-1.png", "away/Journal/a-1-1.png"}) {
    EXPECT_FALSE(IsJournalPicture(folder / other)) << other;
  }
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

constexpr RegistryRoot kUser = RegistryRoot::kCurrentUser;

struct RegistryTest : testing::Test {
  RegistryDriver driver;
  std::unique_ptr<Registry> registry = driver.Open();
  const std::string root = RegistryDriver::kRoot;
  std::string text;
};

TEST_F(RegistryTest, KeepsTextsForTheNextProgram) {
  const std::string key = root + "\\B\u00f6rse [9]";
  const std::vector<std::pair<std::string, std::string>> values{
      {"ProgramPath", "C:\\Program Files\\B\u00f6rse \u20ac"},
      {"", "the key's own value"},
      {"#=[x", std::string(3000, 'x')},
      {"Empty", ""},
  };
  ASSERT_EQ(registry->CreateKey(kUser, key), 0);
  for (const auto& [name, value] : values) {
    ASSERT_EQ(registry->WriteText(key, name, value), 0) << name;
  }
  ASSERT_EQ(registry->CreateKey(kUser, key), 0);
  registry = driver.Open();
  for (const auto& [name, value] : values) {
    ASSERT_EQ(registry->ReadText(root + "\\b\u00f6rse [9]", name, text), 0) << name;
    EXPECT_EQ(text, value) << name;
  }
}

TEST_F(RegistryTest, WritesOnlyToKeysThatExist) {
  EXPECT_EQ(registry->WriteText(root + "\\Charts", "v", "x"), 2);
  EXPECT_EQ(registry->ReadText(root + "\\Charts", "v", text), 2);
  EXPECT_FALSE(registry->HasKey(kUser, root));
  ASSERT_EQ(registry->CreateKey(kUser, root + "\\Charts\\8.0"), 0);
  EXPECT_TRUE(registry->HasKey(kUser, root + "\\CHARTS"));
  EXPECT_FALSE(registry->HasKey(kUser, root + "\\Chart"));
  EXPECT_FALSE(registry->HasKey(RegistryRoot::kLocalMachine, root + "\\Charts"));
  EXPECT_EQ(registry->WriteText(root + "\\Charts", "v", "x"), 0);
  EXPECT_EQ(registry->ReadText(root + "\\Charts", "w", text), 2);
}

}  // namespace
}  // namespace velumar
