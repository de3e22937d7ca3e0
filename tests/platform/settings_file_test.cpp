#include "platform/qt/settings_file.h"

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>
#include <random>
#include <stdexcept>

#include "support/scratch_folder.h"
#include "support/full_disk.h"

namespace velumar {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

namespace fs = std::filesystem;

TEST(SharedIniFile, AnyBytesComeBackInTheNextProcess) {
  // The characters that mean something in the file come often.
  constexpr std::string_view kSpecial("%=[]#;@,\"\\\n\r\0/. aZ\xC3\xA9", 20);
  std::mt19937 random(1);
  const ScratchFolder folder;
  SharedIniFile file(folder / "settings");
  std::map<std::string, std::string> values;
  for (int i = 0; i < 60; ++i) {
    std::string value(random() % 8, ' ');
    for (char& c : value) {
      c = random() % 4 == 0 ? static_cast<char>(random() % 256)
                            : kSpecial[random() % kSpecial.size()];
    }
    file.Write("A/b\\%\\.", std::to_string(i), values[std::to_string(i)] = value);
  }
  SharedIniFile next(folder / "settings");
  for (const auto& [name, value] : values) {
    EXPECT_EQ(next.Read("a/B\\%\\.", name), value) << testing::PrintToString(value);
  }
}

TEST(SettingsFile, KeepsTextsForTheNextProcess) {
  const ScratchFolder folder;
  const fs::path file = folder / "new folder/deeper/settings";
  const fs::path ini = folder / "new folder/deeper/settings.ini";
  FileSettings settings(file);
  EXPECT_EQ(settings.Read("LastPath"), std::nullopt);
  settings.Save("LastPath", "C:\\Börse\\Übung 100%\\");
  settings.Save("Symbol", "");
  settings.Save("lastpath", "C:\\Kurse, neu\\");
  const FileSettings next(file);
  EXPECT_EQ(next.Read("LastPath"), "C:\\Kurse, neu\\");
  EXPECT_EQ(next.Read("Symbol"), "");
  EXPECT_EQ(next.Read("Top"), std::nullopt);
  EXPECT_EQ(next.Place(), ini.string());
  struct stat status {};
  ASSERT_EQ(::stat(ini.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777u, 0600u);
  ASSERT_EQ(::stat(ini.parent_path().c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777u, 0700u);

  fs::create_symlink(ini, folder / "link.ini");
  FileSettings(folder / "link").Save("Top", "2");
  EXPECT_TRUE(fs::is_symlink(folder / "link.ini")) << "a link stays a link";
  EXPECT_EQ(next.Read("Top"), "2");
}

TEST(SettingsFile, TakesWhatThePersonWrites) {
  const ScratchFolder folder;
  WriteFile(folder / "settings.ini", "[SCORE]\r\naddress=http://scores:8080\r\n\r\nList=a, b\r\n");
  const FileSettings settings(folder / "settings");
  EXPECT_EQ(settings.ReadFrom("Score", "Address"), "http://scores:8080");
  EXPECT_EQ(settings.ReadFrom("Score", "List"), "a, b");
}

TEST(SettingsFile, TheFormOfEarlierVersionsIsReadOnce) {
  const ScratchFolder folder;
  const std::string old =
      "# mine\r\n[SETTINGS]\r\n\r\nTop=100% sure\r\ntop= 7 \r\nPath=C:\\Data\\%20x%\n[Score]\nA=b";
  WriteFile(folder / "settings", old);
  {
    FileSettings settings(folder / "settings");
    EXPECT_THAT(settings.TakeProblems(), IsEmpty());
    EXPECT_EQ(settings.Read("Path"), "C:\\Data\\ x%");
    EXPECT_EQ(settings.ReadFrom("Score", "A"), "b");
    settings.Save("Top", "8");
  }
  EXPECT_EQ(ReadFile(folder / "settings"), old) << "an earlier version can still read it";
  EXPECT_EQ(FileSettings(folder / "settings").Read("Top"), "8");

  WriteFile(folder / "damaged", "[Settings]\nTop=1\nrubbish\n");
  FileSettings damaged(folder / "damaged");
  EXPECT_THAT(damaged.TakeProblems(), ElementsAre(HasSubstr("\"rubbish\" is not a setting")));
}

TEST(SettingsFile, TwoProcessesLoseNothingOfEachOther) {
  const ScratchFolder folder;
  const auto file = folder / "settings";
  constexpr int kSaves = 25;
  const auto save_all = [&](const std::string& prefix) {
    FileSettings settings(file);
    for (int i = 0; i < kSaves; ++i) settings.Save(prefix + std::to_string(i), "kept");
  };
  FileSettings watching(file);
  const pid_t other = ::fork();
  if (other == 0) {
    save_all("theirs");
    ::_exit(0);
  }
  save_all("ours");
  int status = 1;
  ASSERT_EQ(::waitpid(other, &status, 0), other);
  ASSERT_EQ(status, 0);
  for (int i = 0; i < kSaves; ++i) {
    EXPECT_EQ(watching.Read("ours" + std::to_string(i)), "kept");
    EXPECT_EQ(watching.Read("theirs" + std::to_string(i)), "kept");
  }
}

// Nothing is read without end: neither a device nor a file of any size.
TEST(SettingsFile, WhatCantBeReadIsSetAsideAndReported) {
  const ScratchFolder folder;
  const auto ini = folder / "settings.ini";
  const auto holds = [&](const std::string& bytes) {
    return [&, bytes] { WriteFile(ini, bytes); };
  };
  const std::vector<std::pair<std::function<void()>, std::string>> cases{
      {holds("no sections at all"), "it is not a settings file"},
      {holds("[Settings]\nTop=1\nrubbish\n"), "it is not a settings file"},
      {holds("[Settings\nTop=1\n"), "it is not a settings file"},
      {holds(std::string(100, '\0')), "it is not a settings file"},
      {[&] { fs::create_directories(ini / "inside"); }, "it is a folder"},
      {[&] { ASSERT_EQ(::mkfifo(ini.c_str(), 0600), 0); }, "it is a pipe or a device"},
      {[&] { fs::create_symlink("/dev/zero", ini); }, "it is a pipe or a device"},
      {[&] {
         WriteFile(ini, "");
         fs::resize_file(ini, 5'000'000'000);
       },
       "it has 5000000000 bytes"},
  };
  int number = 0;
  for (const auto& [make, why] : cases) {
    make();
    const bool small = fs::is_regular_file(ini) && fs::file_size(ini) < 200;
    const std::string damaged = small ? ReadFile(ini) : "";
    FileSettings settings(folder / "settings");
    const auto aside = folder / ("settings.ini.damaged-" + std::to_string(++number));
    EXPECT_EQ(settings.Read("Top"), std::nullopt);
    EXPECT_THAT(settings.TakeProblems(), ElementsAre(AllOf(HasSubstr(ini.string()), HasSubstr(why),
                                                           HasSubstr(aside.filename().string()))));
    EXPECT_THAT(settings.TakeProblems(), IsEmpty());
    EXPECT_TRUE(fs::exists(fs::symlink_status(aside)));
    EXPECT_EQ(small ? ReadFile(aside) : "", damaged);
    settings.Save("Top", "2");
    EXPECT_EQ(FileSettings(folder / "settings").Read("Top"), "2");
    fs::remove(ini);
  }
}

TEST(SettingsFile, AFullDiskHarmsNothingOnIt) {
  const ScratchFolder folder;
  const auto ini = folder / "settings.ini";
  FileSettings settings(folder / "settings");
  settings.Save("Top", "1");
  const std::string before = ReadFile(ini);
  {
    const FullDisk full(64);
    try {
      settings.Save("Top", std::string(500, '2'));
      FAIL() << "saved";
    } catch (const std::runtime_error& error) {
      EXPECT_THAT(error.what(), HasSubstr(ini.string()));
    }
  }
  EXPECT_EQ(ReadFile(ini), before);
  EXPECT_EQ(std::distance(fs::directory_iterator(folder.Path()), {}), 1);
  settings.Save("Left", "3");
  EXPECT_EQ(FileSettings(folder / "settings").Read("Left"), "3");
}

}  // namespace
}  // namespace velumar
