#include <windows.h>

#include <array>
#include <atomic>
#include <chrono>
#include <future>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>

#include "base/windows_text.h"
#include "platform/key_notation.h"
#include "platform/windows/chart_windows.h"
#include "platform/windows/key_sender.h"

namespace velumar {
namespace {

using std::chrono_literals::operator""ms;

constexpr const char* kHost = "VelumarTestHost";

// A window with a thread of its own, as another program's: a line to type into.
class TypingWindow {
 public:
  explicit TypingWindow(std::string title) : title_(WideText(title)), thread_([this] { Run(); }) {
    while (window_ == nullptr) std::this_thread::sleep_for(1ms);
  }
  ~TypingWindow() {
    busy_ms_ = 0;
    ::PostThreadMessageW(::GetWindowThreadProcessId(window_, nullptr), WM_QUIT, 0, 0);
  }
  TypingWindow(const TypingWindow&) = delete;
  TypingWindow& operator=(const TypingWindow&) = delete;

  HWND Window() const { return window_; }
  // Every key takes that long from now on.
  void Linger(int ms) { busy_ms_ = ms; }
  // What has been typed since the last call, without asking the window's thread.
  std::string Taken() {
    const std::lock_guard lock(guard_);
    return Utf8Text(std::exchange(text_, {}));
  }

 private:
  void Run() {
    const HWND window =
        ::CreateWindowExW(0, L"STATIC", title_.c_str(), WS_OVERLAPPEDWINDOW | WS_VISIBLE, 20, 20,
                          300, 200, nullptr, nullptr, ::GetModuleHandleW(nullptr), nullptr);
    ::SetFocus(window);
    window_ = window;
    MSG message;
    while (::GetMessageW(&message, nullptr, 0, 0) > 0) Handle(message);
    ::DestroyWindow(window);
  }

  void Handle(const MSG& message) {
    const bool key = message.message == WM_KEYDOWN || message.message == WM_SYSKEYDOWN;
    if (key) std::this_thread::sleep_for(std::chrono::milliseconds(busy_ms_));
    Note(message, key);
    if (message.message == WM_SYSKEYDOWN || message.message == WM_SYSKEYUP) return;
    ::TranslateMessage(&message);
    ::DispatchMessageW(&message);
  }

  void Note(const MSG& message, bool key) {
    const std::lock_guard lock(guard_);
    if (message.message == WM_SYSKEYDOWN && message.wParam != VK_MENU) {
      text_ += L"<alt " + std::wstring(1, static_cast<wchar_t>(message.wParam)) + L">";
    } else if (key && message.wParam == VK_END) {
      text_ += L"<end>";
    } else if (key && message.wParam == VK_TAB && ::GetKeyState(VK_CONTROL) < 0) {
      text_ += L"<ctrl tab>";
    } else if (message.message == WM_CHAR) {
      text_ += static_cast<wchar_t>(message.wParam);
    }
  }

  std::wstring title_;
  std::mutex guard_;
  std::wstring text_;
  std::atomic<int> busy_ms_ = 0;
  std::atomic<HWND> window_ = nullptr;
  std::jthread thread_;
};

// What has come within a second, on a busy machine too.
std::string TakenInTime(TypingWindow& host, std::size_t length) {
  std::string taken = host.Taken();
  for (int wait = 0; wait < 100 && taken.size() < length; ++wait) {
    std::this_thread::sleep_for(10ms);
    taken += host.Taken();
  }
  return taken;
}

class WindowsKeysTest : public ::testing::Test {
 protected:
  WindowsChartWindows windows{kHost};
  WindowsKeySender keys{kHost};
};

// A person's keys, which are not marked as ours.
void TypeLetters(int count) {
  for (int i = 0; i < count; ++i) {
    std::array<INPUT, 2> inputs{};
    for (INPUT& input : inputs) {
      input.type = INPUT_KEYBOARD;
      input.ki.wVk = 'L';
      input.ki.wScan = static_cast<WORD>(::MapVirtualKeyW('L', MAPVK_VK_TO_VSC));
    }
    inputs[1].ki.dwFlags = KEYEVENTF_KEYUP;
    ::SendInput(2, inputs.data(), sizeof(INPUT));
    std::this_thread::sleep_for(20ms);
  }
}

TEST_F(WindowsKeysTest, ATraderWhoTypesElsewhereLosesNoKeyToARefresh) {
  constexpr int kLetters = 40;
  TypingWindow host(kHost);
  TypingWindow other("VelumarTestOther");
  ASSERT_TRUE(windows.BringToFront("VelumarTestOther"));
  std::jthread person([] { TypeLetters(kLetters); });
  for (int refresh = 0; refresh < 3; ++refresh) {
    EXPECT_EQ(keys.SendBehind("^{TAB}"), KeyOutcome::kTakenIn);
    EXPECT_EQ(::GetForegroundWindow(), other.Window());
  }
  person.join();
  EXPECT_EQ(TakenInTime(other, kLetters), std::string(kLetters, 'l'));
  EXPECT_EQ(host.Taken(), "<ctrl tab><ctrl tab><ctrl tab>");
}

TEST_F(WindowsKeysTest, AWindowComesToTheFrontByItsTitle) {
  TypingWindow host(std::string(kHost) + " - [Alpha]");
  TypingWindow other("VelumarTestOther");
  EXPECT_TRUE(windows.BringToFront("VelumarTestOther"));
  EXPECT_EQ(::GetForegroundWindow(), other.Window());
  ::ShowWindow(host.Window(), SW_MINIMIZE);
  EXPECT_TRUE(windows.BringToFront(kHost)) << "by the beginning of the title";
  EXPECT_EQ(::GetForegroundWindow(), host.Window());
  EXPECT_EQ(::IsIconic(host.Window()), 0);
  EXPECT_FALSE(windows.BringToFront("VelumarTestNobody"));
  EXPECT_EQ(::GetForegroundWindow(), host.Window()) << "a failure changes nothing";

  const auto id = static_cast<WindowId>(reinterpret_cast<std::uintptr_t>(host.Window()));
  const std::vector<WindowId> all = windows.TopLevelWindows();
  EXPECT_NE(std::find(all.begin(), all.end(), id), all.end());
  EXPECT_EQ(windows.WindowTitle(id), std::string(kHost) + " - [Alpha]");
  EXPECT_TRUE(windows.IsWindowVisible(id));
  EXPECT_FALSE(windows.HasOwner(id));
  windows.Maximize(id);
  EXPECT_NE(::IsZoomed(host.Window()), 0);
}

TEST_F(WindowsKeysTest, TheFileDialogIsFoundByClassAndTitle) {
  const HWND dialog = ::CreateWindowExW(0, L"#32770", L"VelumarTestOpen", WS_POPUP, 0, 0, 10, 10,
                                        nullptr, nullptr, ::GetModuleHandleW(nullptr), nullptr);
  EXPECT_FALSE(windows.DialogExists("#32770", "VelumarTestOpen")) << "another program's";
  const TypingWindow host(kHost);
  EXPECT_TRUE(windows.DialogExists("#32770", "VelumarTestOpen"));
  EXPECT_FALSE(windows.DialogExists("#32770", "VelumarTestOther"));
  EXPECT_FALSE(windows.DialogExists("STATIC", "VelumarTestOpen"));
  ::DestroyWindow(dialog);
}

TEST_F(WindowsKeysTest, TextsArriveWholeAndInOrder) {
  TypingWindow host(kHost);
  ASSERT_TRUE(windows.BringToFront(kHost));
  host.Taken();
  const std::string text =
      "Z:\\B\xC3\xB6rse (100%)\\{a}~+^ \xE2\x82\xAC \xD0\x96\xF0\x9F\x93\x88 Zz";
  EXPECT_EQ(keys.Send(EscapedKeys(text)), KeyOutcome::kTakenIn);
  EXPECT_EQ(TakenInTime(host, text.size()), text);
  EXPECT_EQ(keys.Send("{SPACE}{END}S~"), KeyOutcome::kTakenIn);
  EXPECT_EQ(TakenInTime(host, 8), " <end>S\r");
  EXPECT_EQ(keys.Send("%FO^{TAB}x"), KeyOutcome::kTakenIn);
  EXPECT_EQ(TakenInTime(host, 19), "<alt F>O<ctrl tab>x");
  EXPECT_THROW(keys.Send("\x01"), std::invalid_argument);
}

void PressAndRelease(WORD code) {
  std::array<INPUT, 2> inputs{};
  for (INPUT& input : inputs) {
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = code;
  }
  inputs[1].ki.dwFlags = KEYEVENTF_KEYUP;
  ::SendInput(2, inputs.data(), sizeof(INPUT));
}

TEST_F(WindowsKeysTest, CapsLockChangesNothing) {
  TypingWindow host(kHost);
  ASSERT_TRUE(windows.BringToFront(kHost));
  PressAndRelease(VK_CAPITAL);
  std::this_thread::sleep_for(100ms);  // until every program knows of it
  host.Taken();
  EXPECT_EQ(keys.Send("aZ 1!"), KeyOutcome::kTakenIn);
  EXPECT_EQ(TakenInTime(host, 5), "aZ 1!");
  EXPECT_EQ(keys.Send("%FO"), KeyOutcome::kTakenIn);
  EXPECT_EQ(TakenInTime(host, 8), "<alt F>O");
  PressAndRelease(VK_CAPITAL);
}

TEST_F(WindowsKeysTest, AShortcutThatTheKeyboardLacksIsNotTypedBare) {
  TypingWindow host(kHost);
  ASSERT_TRUE(windows.BringToFront(kHost));
  host.Taken();
  EXPECT_EQ(keys.Send("a%\xD0\x96"
                      "b"),
            KeyOutcome::kHeldBack);
  EXPECT_EQ(TakenInTime(host, 1), "a");
  EXPECT_EQ(keys.Send("b"), KeyOutcome::kTakenIn);
  EXPECT_EQ(TakenInTime(host, 1), "b") << "and nothing stays pressed";
}

TEST_F(WindowsKeysTest, ASendReturnsWhenTheKeysAreReadAndNotMuchLater) {
  TypingWindow host(kHost);
  ASSERT_TRUE(windows.BringToFront(kHost));
  host.Taken();
  host.Linger(30);
  EXPECT_EQ(keys.Send("abcdefgh"), KeyOutcome::kTakenIn);
  EXPECT_EQ(TakenInTime(host, 8), "abcdefgh");
  host.Linger(4000);
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(keys.Send("x"), KeyOutcome::kNotAnswered);
  const auto time = std::chrono::steady_clock::now() - start;
  EXPECT_GE(time, 1900ms);
  EXPECT_LT(time, 3500ms);
}

TEST_F(WindowsKeysTest, NoOtherWindowEverGetsAKey) {
  TypingWindow host(kHost);
  TypingWindow other("VelumarTestOther");
  ASSERT_TRUE(windows.BringToFront("VelumarTestOther"));
  EXPECT_EQ(keys.Send("secret"), KeyOutcome::kHeldBack);
  EXPECT_EQ(other.Taken() + host.Taken(), "");
}

TEST_F(WindowsKeysTest, APersonsModifierIsWaitedFor) {
  TypingWindow host(kHost);
  ASSERT_TRUE(windows.BringToFront(kHost));
  host.Taken();
  const auto hold = [](DWORD flags) {
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = VK_SHIFT;
    input.ki.dwFlags = flags;
    ::SendInput(1, &input, sizeof input);
  };
  hold(0);
  auto let_go = std::async(std::launch::async, [&] {
    std::this_thread::sleep_for(300ms);
    hold(KEYEVENTF_KEYUP);
  });
  EXPECT_EQ(keys.Send("abc"), KeyOutcome::kTakenIn);
  let_go.wait();
  EXPECT_EQ(TakenInTime(host, 3), "abc");
  hold(0);
  EXPECT_EQ(keys.Send("abc"), KeyOutcome::kHeldBack);
  hold(KEYEVENTF_KEYUP);
  EXPECT_EQ(host.Taken(), "");
}

}  // namespace
}  // namespace velumar
