#include <windows.h>
// Behind windows.h, whose names it needs.
#include <shellapi.h>

#include <chrono>
#include <stdexcept>
#include <system_error>
#include <thread>

#include "base/whole_file.h"
#include "base/windows_text.h"
#include "platform/windows/programs.h"
#include "platform/windows/waits.h"
#include "registry_driver.h"
#include "support/scratch_folder.h"

namespace velumar {
namespace {

using ::testing::HasSubstr;
using std::chrono_literals::operator""ms;

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
  if (registry.CreateKey(kAll, RegistryDriver::kRoot) == 5)
    GTEST_SKIP() << "only for administrators";
  EXPECT_TRUE(opens(KEY_WOW64_32KEY));
  EXPECT_FALSE(opens(KEY_WOW64_64KEY));
  EXPECT_EQ(registry.OpenKey(kAll, RegistryDriver::kRoot, Registry::kRead, key), 0);
  registry.CloseKey(key);
  EXPECT_EQ(registry.DeleteKey(kAll, RegistryDriver::kRoot), 0);
  EXPECT_FALSE(opens(KEY_WOW64_32KEY));
}

TEST(WholeFile, IsReplacedWholeOrNotAtAll) {
  const ScratchFolder folder;
  const auto file = folder / "settings";
  constexpr std::size_t kLimit = 7;
  ReplaceWholeFile(file, "one", FileAccess::kUserAlone);
  ReplaceWholeFile(file, "three\r\n", FileAccess::kUserAlone);
  EXPECT_EQ(ReadWholeFile(file, kLimit), "three\r\n");
  EXPECT_THROW(ReadWholeFile(file, kLimit - 1), FileError);
  EXPECT_THROW(ReadWholeFile("NUL", kLimit), FileError);
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
