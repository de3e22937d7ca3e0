#include <windows.h>

#include <chrono>
#include <string>
#include <thread>

#include "key_driver.h"
#include "platform/key_notation.h"
#include "platform/windows/held_keys.h"
#include "platform/windows/waits.h"

namespace velumar {
namespace {

using std::chrono_literals::operator""ms;

constexpr const char* kHost = KeyDriver::kHost;

struct WindowsKeysTest : testing::Test {
  KeyDriver driver;
};

// What the chart program receives in time, on a busy machine too.
std::string TakenInTime(KeyDriver& driver, WindowId window, std::size_t length) {
  std::string taken = driver.Taken(window);
  for (int wait = 0; wait < 100 && taken.size() < length; ++wait) {
    std::this_thread::sleep_for(10ms);
    taken += driver.Taken(window);
  }
  return taken;
}

TEST_F(WindowsKeysTest, HeldKeysGoToNoOtherWindow) {
  const WindowId other = driver.OpenOther("VelumarTestOther");
  const HWND meant = ::GetForegroundWindow();
  const WindowId chart = driver.OpenChart(kHost);
  {
    const HeldKeys held(meant);
    const std::jthread person([this] { driver.PressL(); });
    WaitServingOthers(200ms);
  }
  EXPECT_EQ(TakenInTime(driver, chart, 1) + driver.Taken(other), "");
}

TEST_F(WindowsKeysTest, TheFileDialogIsFoundByClassAndTitle) {
  const HWND dialog = ::CreateWindowExW(0, L"#32770", L"VelumarTestOpen", WS_POPUP, 0, 0, 10, 10,
                                        nullptr, nullptr, ::GetModuleHandleW(nullptr), nullptr);
  EXPECT_FALSE(driver.windows.DialogExists("#32770", "VelumarTestOpen")) << "another program's";
  driver.OpenChart(kHost);
  EXPECT_TRUE(driver.windows.DialogExists("#32770", "VelumarTestOpen"));
  EXPECT_FALSE(driver.windows.DialogExists("#32770", "VelumarTestOther"));
  EXPECT_FALSE(driver.windows.DialogExists("STATIC", "VelumarTestOpen"));
  ::DestroyWindow(dialog);
}

TEST_F(WindowsKeysTest, TextsArriveWholeAndInOrder) {
  const WindowId chart = driver.OpenChart(kHost);
  driver.Taken(chart);
  const std::string text =
      "Z:\\B\xC3\xB6rse (100%)\\{a}~+^ \xE2\x82\xAC \xD0\x96\xF0\x9F\x93\x88 Zz";
  EXPECT_EQ(driver.keys.Send(EscapedKeys(text)), KeyOutcome::kAccepted);
  EXPECT_EQ(TakenInTime(driver, chart, text.size()), text);
}

TEST_F(WindowsKeysTest, AShortcutThatTheKeyboardLacksIsNotTypedBare) {
  const WindowId chart = driver.OpenChart(kHost);
  driver.Taken(chart);
  EXPECT_EQ(driver.keys.Send("a%\xD0\x96"
                             "b"),
            KeyOutcome::kNotSent);
  EXPECT_EQ(TakenInTime(driver, chart, 1), "a");
  EXPECT_EQ(driver.keys.Send("b"), KeyOutcome::kAccepted);
  EXPECT_EQ(TakenInTime(driver, chart, 1), "b") << "and nothing stays pressed";
}

}  // namespace
}  // namespace velumar
