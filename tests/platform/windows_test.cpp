#include <windows.h>
// Behind windows.h, whose names it needs.
#include <shellapi.h>

#include <array>
#include <chrono>
#include <stdexcept>
#include <system_error>
#include <thread>

#include "base/paths.h"
#include "base/whole_file.h"
#include "base/windows_text.h"
#include "platform/file_lock.h"
#include "platform/programs.h"
#include "platform/system_clock.h"
#include "platform/temp_folder.h"
#include "platform/windows/mailbox.h"
#include "platform/windows/quoted_argument.h"
#include "platform/windows/registry_settings.h"
#include "platform/windows/system_locale.h"
#include "platform/windows/system_registry.h"
#include "platform/windows/waitable_timer.h"

namespace velumar {
namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using std::chrono_literals::operator""ms;

constexpr RegistryRoot kUser = RegistryRoot::kCurrentUser;

// A key of the real registry for one test.
struct TestKey {
  TestKey() { ::RegDeleteTreeW(HKEY_CURRENT_USER, L"Software\\VelumarTest"); }
  ~TestKey() { ::RegDeleteTreeW(HKEY_CURRENT_USER, L"Software\\VelumarTest"); }
  static constexpr std::string_view kPath = "Software\\VelumarTest";
};

TEST(SystemRegistry, KeepsValuesAndReturnsTheCodesOfFailures) {
  const TestKey cleaned;
  SystemRegistry registry;
  const std::string path = std::string(TestKey::kPath) + "\\B\xC3\xB6rse 9.0";
  RegistryKey key = 0;
  EXPECT_EQ(registry.OpenKey(kUser, path, Registry::kRead, key), 2);
  EXPECT_EQ(registry.OpenKey(RegistryRoot::kNone, path, Registry::kRead, key), 6);
  ASSERT_EQ(registry.CreateKey(kUser, path), 0);
  ASSERT_EQ(registry.OpenKey(kUser, path, Registry::kRead | Registry::kWrite, key), 0);
  RegistryType type = RegistryType::kDWord;
  std::string bytes;
  EXPECT_EQ(registry.QueryValue(key, "LastPath", type, bytes), 2);
  for (const std::string& text :
       {std::string("C:\\Kurse\\\xC3\x9C\xE2\x82\xAC"), std::string(), std::string(3000, 'x')}) {
    EXPECT_EQ(registry.SetValue(key, "LastPath", RegistryType::kString, text), 0);
    EXPECT_EQ(registry.QueryValue(key, "lastpath", type, bytes), 0);
    EXPECT_EQ(type, RegistryType::kString);
    EXPECT_EQ(bytes, text);
  }
  std::array<char, 4096> seen{};
  DWORD size = seen.size();
  EXPECT_EQ(::RegGetValueW(HKEY_CURRENT_USER, WideText(path).c_str(), L"LastPath", RRF_RT_REG_SZ,
                           nullptr, seen.data(), &size),
            0);
  EXPECT_EQ(size, 2 * (bytes.size() + 1)) << "closed with a zero, for other programs";
  const std::string four("\x01\0\xFF\x7F", 4);
  EXPECT_EQ(registry.SetValue(key, "Number", RegistryType::kDWord, four), 0);
  EXPECT_EQ(registry.SetValue(key, "Number", RegistryType::kDWord, "12345"), 87);
  EXPECT_EQ(registry.QueryValue(key, "Number", type, bytes), 0);
  EXPECT_EQ(type, RegistryType::kDWord);
  EXPECT_EQ(bytes, four);
  EXPECT_EQ(registry.DeleteValue(key, "Number"), 0);
  EXPECT_EQ(registry.DeleteValue(key, "Number"), 2);
  registry.CloseKey(key);
  EXPECT_EQ(registry.QueryValue(key, "LastPath", type, bytes), 6);
  ASSERT_EQ(registry.OpenKey(kUser, path, Registry::kRead, key), 0);
  EXPECT_EQ(registry.SetValue(key, "LastPath", RegistryType::kString, "x"), 5);
  registry.CloseKey(key);
  EXPECT_NE(registry.DeleteKey(kUser, TestKey::kPath), 0) << "there is a key under it";
  EXPECT_EQ(registry.DeleteKey(kUser, path), 0);
  EXPECT_EQ(registry.DeleteKey(kUser, path), 2);
}

// Where a chart program of 32 bits looks.
TEST(SystemRegistry, WhatIsForAllUsersLiesInTheViewOf32Bits) {
  constexpr RegistryRoot kAll = RegistryRoot::kLocalMachine;
  constexpr const wchar_t* kName = L"Software\\VelumarTest";
  SystemRegistry registry;
  RegistryKey key = 0;
  const auto opens = [](REGSAM view) {
    HKEY native = nullptr;
    if (::RegOpenKeyExW(HKEY_LOCAL_MACHINE, kName, 0, KEY_READ | view, &native) != 0) return false;
    ::RegCloseKey(native);
    return true;
  };
  if (registry.CreateKey(kAll, TestKey::kPath) == 5) GTEST_SKIP() << "only for administrators";
  EXPECT_TRUE(opens(KEY_WOW64_32KEY));
  EXPECT_FALSE(opens(KEY_WOW64_64KEY));
  EXPECT_EQ(registry.OpenKey(kAll, TestKey::kPath, Registry::kRead, key), 0);
  registry.CloseKey(key);
  EXPECT_EQ(registry.DeleteKey(kAll, TestKey::kPath), 0);
  EXPECT_FALSE(opens(KEY_WOW64_32KEY));
}

TEST(RegistrySettings, KeepTextsForTheNextProcess) {
  const TestKey cleaned;
  RegistrySettings settings(TestKey::kPath);
  EXPECT_EQ(settings.Read("LastPath"), std::nullopt);
  settings.Save("LastPath", "C:\\B\xC3\xB6rse\\100%\\");
  settings.Save("Symbol", "");
  settings.Save("lastpath", "C:\\Kurse\\");
  const RegistrySettings next(TestKey::kPath);
  EXPECT_EQ(next.Read("LastPath"), "C:\\Kurse\\");
  EXPECT_EQ(next.Read("Symbol"), "");
  EXPECT_EQ(next.Read("Top"), std::nullopt);
  EXPECT_EQ(next.ReadFrom("Score", "Address"), std::nullopt);
  EXPECT_EQ(next.Place(), "HKEY_CURRENT_USER\\Software\\VelumarTest");
}

TEST(WholeFile, IsReplacedWholeOrNotAtAll) {
  const TempFolder folder;
  const auto file = folder / "settings";
  constexpr std::size_t kLimit = 7;
  ReplaceWholeFile(file, "one", FileAccess::kUserAlone);
  const FileState before = StateOf(file);
  ReplaceWholeFile(file, "three\r\n", FileAccess::kUserAlone);
  EXPECT_EQ(ReadWholeFile(file, kLimit), "three\r\n");
  EXPECT_THROW(ReadWholeFile(file, kLimit - 1), FileError);
  EXPECT_THROW(ReadWholeFile("NUL", kLimit), FileError);
  EXPECT_NE(StateOf(file), before);
  EXPECT_EQ(StateOf(folder / "none").size, FileState::kNoFile);
  try {
    ReadWholeFile(folder / "none", kLimit);
    ADD_FAILURE();
  } catch (const std::system_error& error) {
    EXPECT_EQ(error.code(), std::errc::no_such_file_or_directory);
    EXPECT_THAT(error.what(), HasSubstr("none can't be read"));
  }
  ::SetFileAttributesW(file.c_str(), FILE_ATTRIBUTE_READONLY);
  EXPECT_THROW(ReplaceWholeFile(file, "no", FileAccess::kUsual), FileError);
  ::SetFileAttributesW(file.c_str(), FILE_ATTRIBUTE_NORMAL);
  EXPECT_EQ(ReadWholeFile(file, kLimit), "three\r\n");
}

TEST(FileLock, IsHeldByOneUntilItEnds) {
  using State = FileLock::State;
  const TempFolder folder;
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

TEST(WindowsLocale, TellsSeparatorAndPatternOfTheUser) {
  const WindowsLocale locale;
  const std::string pattern = locale.ShortDatePattern();
  for (const char field : {'d', 'M', 'y'}) EXPECT_THAT(pattern, HasSubstr(std::string(1, field)));
  EXPECT_THAT(pattern, HasSubstr(locale.DateSeparator()));
  SYSTEMTIME now{};
  ::GetLocalTime(&now);
  EXPECT_EQ(SystemClock().Today() / 10000, now.wYear);
}

TEST(WaitableTimer, IsNeverShortAndLetsMessagesThrough) {
  const DWORD thread = ::GetCurrentThreadId();
  MSG message;
  ::PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE);  // from now on there is a queue
  int seen = 0;
  const auto handle = [&] {
    while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != 0) {
      if (message.message == WM_APP) ++seen;
    }
  };
  std::jthread other([thread] {
    for (int i = 0; i < 5; ++i) {
      std::this_thread::sleep_for(10ms);
      ::PostThreadMessageW(thread, WM_APP, 0, 0);
    }
  });
  const auto start = std::chrono::steady_clock::now();
  WaitableTimer(200ms).Wait(handle, [] { return true; });
  const auto time = std::chrono::steady_clock::now() - start;
  EXPECT_GE(time, 198ms);
  EXPECT_LT(time, 2000ms);
  EXPECT_EQ(seen, 5);
  ::PostThreadMessageW(thread, WM_APP, 0, 0);
  WaitableTimer(30000ms).Wait(handle, [&] { return seen == 5; });
  EXPECT_LT(std::chrono::steady_clock::now() - start, 5000ms) << "one that isn't wanted ends";
}

TEST(Mailbox, BringsTheNumbersToTheOneOfItsName) {
  EXPECT_FALSE(PostMail("_VELUMAR_TEST", {1, 2}));
  std::vector<std::pair<std::uint32_t, std::uint32_t>> got;
  {
    const WindowsMailbox box("_VELUMAR_TEST",
                             [&](const Mail& mail) { got.emplace_back(mail.first, mail.second); });
    const WindowsMailbox other("_VELUMAR_OTHER", [](const Mail&) { ADD_FAILURE(); });
    EXPECT_TRUE(PostMail("_VELUMAR_TEST", {1, 2}));
    EXPECT_TRUE(PostMail("_VELUMAR_TEST", {0xFFFFFFFF, 0x80000000}));
    MSG message;
    while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != 0) ::DispatchMessageW(&message);
  }
  EXPECT_THAT(got, ElementsAre(std::pair(1U, 2U), std::pair(0xFFFFFFFF, 0x80000000)));
  EXPECT_FALSE(PostMail("_VELUMAR_TEST", {1, 2}));
}

std::string ErrorOfStarting(const std::string& command_line) {
  try {
    SystemPrograms().Start(command_line);
    return "started";
  } catch (const std::runtime_error& error) {
    return error.what();
  }
}

TEST(SystemPrograms, StartWithTheirArguments) {
  const TempFolder folder;
  std::filesystem::create_directory(folder / "my charts");
  std::filesystem::copy_file("C:\\windows\\system32\\cmd.exe", folder / "my charts/MSWIN.EXE");
  const std::string told = PathText(folder / "told");
  SystemPrograms({"/c", "echo here> " + told}).Start(PathText(folder / "my charts" / "MSWIN.EXE"));
  for (int wait = 0; wait < 500 && StateOf(folder / "told").size <= 0; ++wait) {
    std::this_thread::sleep_for(10ms);
  }
  EXPECT_THAT(ReadFile(folder / "told"), HasSubstr("here"));
  const std::string missing = PathText(folder / "none") + "\\MSWIN.EXE";
  EXPECT_THAT(ErrorOfStarting(missing + " /l /e"),
              AllOf(HasSubstr(missing), HasSubstr("can't be started: ")));
}

TEST(SystemPrograms, ArgumentsComeBackAsTheyWere) {
  const std::vector<std::string> arguments{"plain",     "two words",   "",
                                           "a\"b",      "end\\",       "my dir\\",
                                           "\\\\\"q\"", "C:\\a b\\\\", "\xC3\xA9"};
  std::wstring line = L"program";
  for (const std::string& argument : arguments) line += L" " + QuotedArgument(argument);
  int count = 0;
  wchar_t** const words = ::CommandLineToArgvW(line.c_str(), &count);
  std::vector<std::string> back;
  for (int i = 1; i < count; ++i) back.push_back(Utf8Text(words[i]));
  ::LocalFree(words);
  EXPECT_EQ(back, arguments);
}

}  // namespace
}  // namespace velumar
