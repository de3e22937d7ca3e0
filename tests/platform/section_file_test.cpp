#include "platform/section_file.h"

#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>
#include <random>
#include <system_error>

#include "platform/file_lock.h"
#include "platform/settings_file.h"
#include "support/full_disk.h"
#include "support/scratch_folder.h"

namespace velumar {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

std::string RandomText(std::mt19937& random) {
  // The characters that mean something in the file come often.
  constexpr std::string_view kTelling("%=[]#\\\n\r\0 AaZ0\xC3\xA9", 16);
  std::string text(random() % 8, ' ');
  for (char& c : text) {
    c = random() % 4 == 0 ? static_cast<char>(random() % 256)
                          : kTelling[random() % kTelling.size()];
  }
  return text;
}

TEST(SectionText, EveryTextComesBackAsItWas) {
  std::mt19937 random(1);
  for (int run = 0; run < 2000; ++run) {
    Sections sections;
    for (auto i = random() % 3; i > 0; --i) {
      SectionEntries& entries = sections[RandomText(random)];
      for (auto j = random() % 4; j > 0; --j) entries[RandomText(random)] = RandomText(random);
    }
    ASSERT_EQ(ParseSections(FormatSections(sections)), sections) << FormatSections(sections);
  }
}

TEST(SectionText, TakesWhatAPersonEdits) {
  const Sections sections = ParseSections(
      "# my settings\r\n[SETTINGS]\r\n\r\nTop=100% sure\r\ntop= 7 \r\nPath=C:\\Data\\%20x");
  ASSERT_EQ(sections.size(), 1u);
  const SectionEntries& entries = sections.at("Settings");
  EXPECT_EQ(entries.at("TOP"), " 7 ");
  EXPECT_EQ(entries.at("Path"), "C:\\Data\\ x");
  EXPECT_EQ(ParseSections("[S]\na=100%\nb=50%zz").at("S").at("a"), "100%");
}

TEST(SettingsFile, KeepsTextsForTheNextProcess) {
  const ScratchFolder folder;
  const auto file = folder / "new folder/deeper/settings";
  FileSettings settings(file);
  EXPECT_EQ(settings.Read("LastPath"), std::nullopt);
  settings.Save("LastPath", "C:\\Börse\\Übung 100%\\");
  settings.Save("Symbol", "");
  settings.Save("lastpath", "C:\\Kurse\\");
  const FileSettings next(file);
  EXPECT_EQ(next.Read("LastPath"), "C:\\Kurse\\");
  EXPECT_EQ(next.Read("Symbol"), "");
  EXPECT_EQ(next.Read("Top"), std::nullopt);
  struct stat status {};
  ASSERT_EQ(::stat(file.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777u, 0600u);
  ASSERT_EQ(::stat(file.parent_path().c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777u, 0700u);

  std::filesystem::create_symlink(file, folder / "link");
  FileSettings(folder / "link").Save("Top", "2");
  EXPECT_TRUE(std::filesystem::is_symlink(folder / "link")) << "a link stays a link";
  EXPECT_EQ(FileSettings(file).Read("Top"), "2");
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

// Damage is kept, and nothing is read without end: neither a device nor a file of any size.
TEST(SettingsFile, WhatCantBeReadIsKeptAsideAndReported) {
  const ScratchFolder folder;
  const auto file = folder / "settings";
  const auto holds = [&](const std::string& bytes) {
    return [&, bytes] { WriteFile(file, bytes); };
  };
  const std::vector<std::pair<std::function<void()>, std::string>> cases{
      {holds("no sections at all"), "line 1 has no equals sign"},
      {holds("[Settings]\nTop=1\nrubbish\n"), "line 3 has no equals sign"},
      {holds("[Settings\nTop=1\n"), "line 1 has no closing bracket"},
      {holds("Top=1\n"), "line 1 stands before any section"},
      {holds(std::string("[Settings]\nTop=\0\0\0\0", 19)), "line 2 holds a zero byte"},
      {[&] { std::filesystem::create_directories(file / "inside"); }, "a folder"},
      {[&] { ASSERT_EQ(::mkfifo(file.c_str(), 0600), 0); }, "a pipe or a device"},
      {[&] { std::filesystem::create_symlink("/dev/zero", file); }, "a pipe or a device"},
      {[&] {
         WriteFile(file, "");
         std::filesystem::resize_file(file, 5'000'000'000);
       },
       "5000000000 bytes"},
  };
  int number = 0;
  for (const auto& [make, why] : cases) {
    make();
    const bool small =
        std::filesystem::is_regular_file(file) && std::filesystem::file_size(file) < 100;
    const std::string damaged = small ? ReadFile(file) : "";
    FileSettings settings(file);
    const auto aside = folder / ("settings.damaged-" + std::to_string(++number));
    EXPECT_EQ(settings.Read("Top"), std::nullopt);
    EXPECT_THAT(settings.TakeProblems(), ElementsAre(AllOf(HasSubstr(file.string()), HasSubstr(why),
                                                           HasSubstr(aside.filename().string()))));
    EXPECT_THAT(settings.TakeProblems(), IsEmpty());
    EXPECT_TRUE(std::filesystem::exists(std::filesystem::symlink_status(aside)));
    EXPECT_EQ(small ? ReadFile(aside) : "", damaged);
    settings.Save("Top", "2");
    EXPECT_EQ(FileSettings(file).Read("Top"), "2");
    std::filesystem::remove(file);
  }
}

TEST(SettingsFile, AFullDiskChangesNothing) {
  const ScratchFolder folder;
  const auto file = folder / "settings";
  FileSettings settings(file);
  settings.Save("Top", "1");
  {
    const FullDisk full(64);
    try {
      settings.Save("Top", std::string(500, '2'));
      FAIL() << "saved";
    } catch (const std::system_error& error) {
      EXPECT_THAT(error.what(), HasSubstr(file.string()));
    }
  }
  EXPECT_EQ(settings.Read("Top"), "1");
  EXPECT_EQ(FileSettings(file).Read("Top"), "1");
  for (const auto& entry : std::filesystem::directory_iterator(folder.Path())) {
    EXPECT_THAT(entry.path().filename(), ::testing::AnyOf("settings", "settings.lock"));
  }
  settings.Save("Top", "3");
  EXPECT_EQ(FileSettings(file).Read("Top"), "3");
}

TEST(SettingsFile, WaitsFiveSecondsForAnotherProgram) {
  const ScratchFolder folder;
  FileSettings settings(folder / "settings");
  const FileLock held(folder / "settings.lock");
  try {
    settings.Save("Top", "1");
    FAIL() << "saved without the lock";
  } catch (const std::system_error& error) {
    EXPECT_THAT(error.what(), HasSubstr("locked by another program"));
  }
}

}  // namespace
}  // namespace velumar
