#include "platform/system.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <thread>

#include "platform/command_line.h"
#include "support/scratch_folder.h"

namespace velumar {
namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

namespace fs = std::filesystem;

TEST(SplitCommandLine, AllUpToTheChartProgramIsOnePath) {
  EXPECT_THAT(SplitCommandLine("C:\\Program Files\\Charts\\MSWIN.EXE /l /e"),
              ElementsAre("C:/Program Files/Charts/MSWIN.EXE", "/l", "/e"));
  EXPECT_THAT(SplitCommandLine("/opt/MSWIN.EXE files\\MSWIN.EXE"),
              ElementsAre("/opt/MSWIN.EXE files/MSWIN.EXE"));
  EXPECT_THAT(SplitCommandLine("\"/opt/my charts/MSWIN.EXE\" /l"),
              ElementsAre("/opt/my charts/MSWIN.EXE", "/l"));
  EXPECT_THAT(SplitCommandLine("/bin/echo  a  b "), ElementsAre("/bin/echo", "a", "b"));
  EXPECT_THAT(SplitCommandLine("\"/no end"), ElementsAre("/no end"));
}

void MakeProgram(const fs::path& file, std::string_view script, fs::perms perms) {
  WriteFile(file, script);
  fs::permissions(file, perms);
}

std::string WrittenTo(const fs::path& file) {
  for (int wait = 0; wait < 500 && !fs::exists(file); ++wait) {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return ReadFile(file);
}

std::string ErrorOfStarting(const std::string& command_line) {
  try {
    SystemPrograms().Start(command_line);
    return "started";
  } catch (const std::runtime_error& error) {
    return error.what();
  }
}

TEST(SystemPrograms, StartsApartWithItsArguments) {
  const ScratchFolder folder;
  fs::create_directory(folder / "my charts");
  MakeProgram(folder / "my charts/MSWIN.EXE",
              "#!/bin/sh\nread line\necho \"$@\" \"<$line>\" > \"$(dirname \"$0\")/part\"\n"
              "mv \"$(dirname \"$0\")/part\" \"$(dirname \"$0\")/told\"\n",
              fs::perms::owner_all);
  SystemPrograms({"--state", "a b"}).Start(folder.Path().string() + "\\my charts\\MSWIN.EXE /l /e");
  EXPECT_EQ(WrittenTo(folder / "my charts/told"), "/l /e --state a b <>\n");
}

TEST(SystemPrograms, AProgramThatCantStartIsNamed) {
  const ScratchFolder folder;
  const std::string path = folder.Path().string() + "/MSWIN.EXE";
  EXPECT_THAT(ErrorOfStarting(path + " /l /e"), AllOf(HasSubstr(path), HasSubstr("no such file")));
  MakeProgram(path, "#!/bin/sh\n", fs::perms::owner_read);
  EXPECT_THAT(ErrorOfStarting(path), AllOf(HasSubstr(path), HasSubstr("not executable")));
  MakeProgram(path, "MZ not for this system", fs::perms::owner_all);
  EXPECT_THAT(ErrorOfStarting(path), AllOf(HasSubstr(path), HasSubstr("can't run that kind")));
}

TEST(SystemPrograms, TheBrowserIsFoundInThePath) {
  const ScratchFolder folder;
  const char* const path = std::getenv("PATH");
  const std::string before = path == nullptr ? "" : path;
  ::setenv("PATH", ("/nowhere:" + folder.Path().string() + ":" + before).c_str(), 1);
  MakeProgram(folder / "xdg-open",
              "#!/bin/sh\necho \"$1\" > \"$0.part\"; mv \"$0.part\" \"$0.told\"\n",
              fs::perms::owner_all);
  SystemPrograms().OpenInBrowser("https://example.org/?a=1&b=2");
  EXPECT_EQ(WrittenTo(folder / "xdg-open.told"), "https://example.org/?a=1&b=2\n");
  ::setenv("PATH", "/nowhere", 1);
  EXPECT_THROW(SystemPrograms().OpenInBrowser("https://example.org"), std::runtime_error);
  ::setenv("PATH", before.c_str(), 1);
}

TEST(SystemPrograms, EndProcessLosesNoOutput) {
  const auto end = [] {
    std::fputs("last words", stderr);
    SystemPrograms().EndProcess();
  };
  EXPECT_EXIT(end(), ::testing::ExitedWithCode(0), "last words");
}

TEST(SystemClock, TodayIsTheLocalDay) {
  ::setenv("TZ", "UTC-14", 1);
  const std::int32_t east = SystemClock().Today();
  ::setenv("TZ", "UTC+12", 1);
  const std::int32_t west = SystemClock().Today();
  ::unsetenv("TZ");
  // 26 hours apart, so never on the same day.
  EXPECT_GT(east, west);
  EXPECT_GE(west, 20200101);
}

}  // namespace
}  // namespace velumar
