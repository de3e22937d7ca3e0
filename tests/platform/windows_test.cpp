// What only Windows has: two views of the registry, quoted arguments, waits for messages, held
// keys.
#include <windows.h>
// Needs the names of windows.h.
#include <shellapi.h>

#include <array>
#include <atomic>
#include <chrono>
#include <thread>

#include "base/windows_text.h"
#include "platform/key_fixture.h"
#include "platform/key_notation.h"
#include "platform/windows/held_keys.h"
#include "platform/windows/waits.h"
#include "system_driver.h"

namespace velumar {
namespace {

using std::chrono_literals::operator""ms;

// 32-bit chart programs look there.
TEST(SystemRegistry, StoresValuesForAllUsersInThe32BitView) {
  const auto opens = [](REGSAM view) {
    HKEY native = nullptr;
    const long code =
        ::RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"Software\\VelumarTest", 0, KEY_READ | view, &native);
    ::RegCloseKey(native);
    return code == 0;
  };
  if (SystemRegistry().CreateKey(RegistryRoot::kLocalMachine, RegistryDriver::kRoot) == 5) {
    GTEST_SKIP() << "only for administrators";
  }
  EXPECT_TRUE(opens(KEY_WOW64_32KEY));
  EXPECT_FALSE(opens(KEY_WOW64_64KEY));
  ::RegDeleteKeyExW(HKEY_LOCAL_MACHINE, L"Software\\VelumarTest", KEY_WOW64_32KEY, 0);
}

TEST(WaitableTimer, IsNeverEarlyAndHandlesMessages) {
  const DWORD thread = ::GetCurrentThreadId();
  MSG message;
  ::PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE);  // creates the queue
  int seen = 0;
  const auto handle = [&] {
    while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != 0) {
      if (message.message == WM_APP) ++seen;
    }
  };
  std::jthread other([thread] {
    std::this_thread::sleep_for(10ms);
    ::PostThreadMessageW(thread, WM_APP, 0, 0);
  });
  const auto start = std::chrono::steady_clock::now();
  const auto passed = [&] { return std::chrono::steady_clock::now() - start; };
  WaitableTimer(200ms).Wait(handle, [] { return true; });
  EXPECT_GE(passed(), 198ms);
  EXPECT_LT(passed(), 2000ms);
  EXPECT_EQ(seen, 1);
  WaitableTimer(30000ms).Wait(handle, [] { return false; });
  EXPECT_LT(passed(), 5000ms) << "a wait that is no longer wanted ends";
}

TEST(SystemPrograms, QuotesArguments) {
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

using WindowsKeys = KeyFixture;

TEST_F(WindowsKeys, HeldKeysAreDroppedForAnotherWindow) {
  const WindowId other = driver->OpenOther("VelumarTestOther");
  const HWND meant = ::GetForegroundWindow();
  const WindowId chart = driver->OpenChart(kHost);
  {
    const HeldKeys held(meant);
    std::atomic<bool> pressed = false;
    const std::jthread person([&] {
      driver->PressL();
      pressed = true;
    });
    while (!pressed) WaitServingOthers(10ms);
  }
  std::this_thread::sleep_for(500ms);
  EXPECT_EQ(driver->Taken(chart) + driver->Taken(other), "");
}

TEST_F(WindowsKeys, FindsTheFileDialogByClassAndTitle) {
  const auto make = [](const wchar_t* window_class, const wchar_t* title) {
    return ::CreateWindowExW(0, window_class, title, WS_POPUP, 0, 0, 10, 10, nullptr, nullptr,
                             ::GetModuleHandleW(nullptr), nullptr);
  };
  const std::array others{make(L"#32770", L"Other"), make(L"STATIC", L"Open")};
  const HWND dialog = make(L"#32770", L"Open");
  EXPECT_FALSE(Windows().FileDialogExists()) << "another program's";
  driver->OpenChart(kHost);
  EXPECT_TRUE(Windows().FileDialogExists());
  ::DestroyWindow(dialog);
  EXPECT_FALSE(Windows().FileDialogExists());
  for (const HWND window : others) ::DestroyWindow(window);
}

TEST_F(WindowsKeys, SendsTextsCompletelyButNoShortcutWithoutAKey) {
  const WindowId chart = driver->OpenChart(kHost);
  driver->Taken(chart);
  const std::string text =
      "Z:\\B\xC3\xB6rse (100%)\\{a}~+^ \xE2\x82\xAC \xD0\x96\xF0\x9F\x93\x88 Zz";
  EXPECT_EQ(Keys().Send(EscapedKeys(text)), KeyOutcome::kAccepted);
  EXPECT_EQ(Taken(chart, text.size()), text);
  EXPECT_EQ(Keys().Send("a%\xD0\x96q"), KeyOutcome::kNotSent);
  EXPECT_EQ(Taken(chart, 1), "a");
  EXPECT_EQ(Keys().Send("b"), KeyOutcome::kAccepted);
  EXPECT_EQ(Taken(chart, 1), "b") << "and nothing stays pressed";
}

}  // namespace
}  // namespace velumar
