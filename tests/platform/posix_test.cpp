// What only POSIX systems have: locales, programs that are started by a path, and lock files that
// can be deleted while they are held.
#include <cstdlib>
#include <filesystem>
#include <stdexcept>

#include "platform/eventually.h"
#include "platform/file_lock.h"
#include "platform/posix/locale.h"
#include "platform/system.h"
#include "platform/user_files.h"
#include "support/full_disk.h"
#include "support/matchers.h"
#include "support/scratch_folder.h"

namespace velumar {
namespace {

namespace fs = std::filesystem;

// The formats come from the locales of many countries.
TEST(LocalePosix, TurnsFormatsIntoPatterns) {
  const std::tuple<const char*, const char*, const char*> formats[] = {
      {"%d. %m. %y", "dd. MM. yy", ". "},
      {"%-m/%-d/%y", "M/d/yy", "/"},
      {"%F", "yyyy-MM-dd", "-"},
      {"%d/%m-%Y", "dd/MM-yyyy", "/"},
      {"%d/%m/%Ey", "dd/MM/yyyy", "/"},
      {"%Y年%m月%d日", "yyyy年MM月dd日", "/"},
      {"%a, %Y.eko %bren %da", "ddd, yyyy'.eko 'MMM'ren 'dd'a'", "/"},
      {"%OC%Oy %b %Od %A", "yyyy MMM dd dddd", " "},
      // A field is missing or there twice, or a pattern can't express the format.
      {"%d %b", "M/d/yyyy", "/"},
      {"%d/%m/%Y (%y)", "M/d/yyyy", "/"},
      {"week %V, %d/%m/%Y", "M/d/yyyy", "/"},
      {"%d d'%m %Y", "M/d/yyyy", "/"},
      {"", "M/d/yyyy", "/"},
  };
  for (const auto& [format, pattern, separator] : formats) {
    EXPECT_EQ(PatternOfDateFormat(format), pattern) << format;
    EXPECT_EQ(SeparatorOfPattern(pattern), separator) << format;
  }
  for (const char* const neutral : {"C", "POSIX", "C.UTF-8", "xx_YY.UTF-8"}) {
    ::setenv("LC_ALL", neutral, 1);
    EXPECT_EQ(SystemLocale()->ShortDatePattern(), "M/d/yyyy") << neutral;
  }
  ::unsetenv("LC_ALL");
}

TEST(SplitCommandLine, TheProgramPathEndsAfterTheChartProgramsName) {
  const std::vector<std::pair<const char*, std::vector<std::string>>> lines{
      {"/opt/MSWIN.EXE files\\MSWIN.EXE", {"/opt/MSWIN.EXE files/MSWIN.EXE"}},
      {"\"/opt/my charts/MSWIN.EXE\" /l", {"/opt/my charts/MSWIN.EXE", "/l"}},
      {"/bin/echo  a  b ", {"/bin/echo", "a", "b"}},
      {"\"/no end", {"/no end"}},
  };
  for (const auto& [line, words] : lines) EXPECT_EQ(SplitCommandLine(line), words);
}

void MakeProgram(const fs::path& file, std::string_view script, fs::perms perms) {
  WriteFile(file, script);
  fs::permissions(file, perms);
}

TEST(SystemPrograms, StartsProgramsWithTheirArgumentsAndNoInput) {
  const ScratchFolder folder;
  fs::create_directory(folder / "my charts");
  MakeProgram(folder / "my charts/MSWIN.EXE",
              "#!/bin/sh\nread line\necho \"$@\" \"<$line>\" > \"$(dirname \"$0\")/received\"\n",
              fs::perms::owner_all);
  SystemPrograms({"--state", "a b"}).Start(folder.Text() + "\\my charts\\MSWIN.EXE /l /e");
  EXPECT_TRUE(
      Eventually([&] { return folder.Read("my charts/received") == "/l /e --state a b <>\n"; }));

  MakeProgram(folder / "xdg-open", "#!/bin/sh\necho \"$1\" > \"$0.received\"\n",
              fs::perms::owner_all);
  const std::string before = std::getenv("PATH");
  ::setenv("PATH", ("/nowhere:" + folder.Text() + ":" + before).c_str(), 1);
  SystemPrograms().OpenInBrowser("https://example.org/?a=1&b=2");
  EXPECT_TRUE(Eventually(
      [&] { return folder.Read("xdg-open.received") == "https://example.org/?a=1&b=2\n"; }));
  ::setenv("PATH", "/nowhere", 1);
  EXPECT_THROW(SystemPrograms().OpenInBrowser("https://example.org"), std::runtime_error);
  ::setenv("PATH", before.c_str(), 1);
}

TEST(SystemPrograms, NamesAProgramThatCantBeStarted) {
  const ScratchFolder folder;
  const std::string path = folder.Sub("MSWIN.EXE");
  const auto expect_error = [&](const char* why) {
    EXPECT_THAT([&] { SystemPrograms().Start(path + " /l"); },
                ThrowsMessage<std::runtime_error>(AllOf(HasSubstr(path), HasSubstr(why))));
  };
  expect_error("no such file");
  MakeProgram(path, "#!/bin/sh\n", fs::perms::owner_read);
  expect_error("not executable");
  MakeProgram(path, "MZ not for this system", fs::perms::owner_all);
  expect_error("can't run that kind");
}

TEST(FileLockPosix, OfADeletedFileLeavesTheNextProcesssFile) {
  const ScratchFolder folder;
  FileLock first(folder / "running");
  fs::remove(folder / "running");
  const FileLock next(folder / "running");
  ASSERT_EQ(next.Held(), FileLock::State::kHeld);
  first.Remove();
  EXPECT_EQ(FileLock(folder / "running").Held(), FileLock::State::kHeldByAnother);
  fs::create_symlink("elsewhere", folder / "link");
  EXPECT_EQ(FileLock(folder / "link").Held(), FileLock::State::kImpossible);
  EXPECT_FALSE(fs::exists(folder / "elsewhere"));
}

TEST(UserFilesPosix, AFailedCopyLeavesNothing) {
  const ScratchFolder folder;
  fs::create_directory(folder / "shared");
  WriteFile(folder / "shared/MASTER", "1234");
  const auto copy = [&] { OwnCopy(folder / "shared", folder / "own/samples"); };
  {
    const FullDisk full(0);
    EXPECT_THROW(copy(), fs::filesystem_error);
  }
  EXPECT_TRUE(fs::is_empty(folder / "own"));
}

// The two zones are 26 hours apart, so the day always differs.
TEST(SystemClock, TodayAndMomentsAreLocal) {
  ::setenv("TZ", "UTC-14", 1);
  const std::int32_t east = SystemClock().Today();
  EXPECT_EQ(SystemClock().LocalMoment("2026-11-27 22:03:40"), "2026-11-28 12:03:40");
  EXPECT_EQ(SystemClock().LocalMoment("2026-11-27"), "2026-11-27");
  ::setenv("TZ", "UTC+12", 1);
  const std::int32_t west = SystemClock().Today();
  ::unsetenv("TZ");
  EXPECT_GT(east, west);
  EXPECT_GE(west, 20200101);
}

}  // namespace
}  // namespace velumar
