#pragma once

#include <windows.h>

#include <array>
#include <atomic>
#include <cctype>
#include <chrono>
#include <map>
#include <mutex>
#include <thread>

#include "base/windows_text.h"
#include "platform/eventually.h"
#include "platform/windows/chart_desktop.h"

namespace velumar {

// A window of another program, with its own thread, that records what is typed into it.
class TypingWindow {
 public:
  explicit TypingWindow(std::string title) : title_(WideText(title)), thread_([this] { Run(); }) {
    while (window_ == nullptr) std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  ~TypingWindow() {
    busy_ = false;
    ::PostThreadMessageW(::GetWindowThreadProcessId(window_, nullptr), WM_QUIT, 0, 0);
  }

  HWND Window() const { return window_; }
  void SetBusy(bool busy) { busy_ = busy; }
  // Returns and clears what was typed, without waiting for the window's thread.
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
    while (key && busy_) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    Note(message, key);
    if (message.message == WM_SYSKEYDOWN || message.message == WM_SYSKEYUP) return;
    ::TranslateMessage(&message);
    ::DispatchMessageW(&message);
  }

  void Note(const MSG& message, bool key) {
    const std::lock_guard lock(guard_);
    if (message.message == WM_SYSKEYDOWN && message.wParam != VK_MENU) {
      text_ += {L'%', static_cast<wchar_t>(std::tolower(static_cast<int>(message.wParam)))};
    } else if (key && message.wParam == VK_END) {
      text_ += L"<End>";
    } else if (key && message.wParam == VK_TAB) {
      text_ += ::GetKeyState(VK_CONTROL) < 0 ? L"^<Tab>" : L"<Tab>";
    } else if (message.message == WM_CHAR && message.wParam == L'\r') {
      text_ += L"<Return>";
    } else if (message.message == WM_CHAR && message.wParam != L'\t') {
      text_ += static_cast<wchar_t>(message.wParam);
    }
  }

  std::wstring title_;
  std::mutex guard_;
  std::wstring text_;
  std::atomic<bool> busy_ = false;
  std::atomic<HWND> window_ = nullptr;
  std::jthread thread_;
};

// A key of the user, which is not marked as ours.
inline void UserKey(WORD code, bool down) {
  INPUT input{};
  input.type = INPUT_KEYBOARD;
  input.ki.wVk = code;
  input.ki.wScan = static_cast<WORD>(::MapVirtualKeyW(code, MAPVK_VK_TO_VSC));
  input.ki.dwFlags = down ? 0 : KEYEVENTF_KEYUP;
  ::SendInput(1, &input, sizeof input);
}

// The chart program, another program and a user on the desktop.
class KeyDriver {
 public:
  static bool Available() { return true; }

  ~KeyDriver() { SetCapsLock(false); }

  ChartWindows& Windows() { return *windows_; }
  KeySender& Keys() { return *keys_; }
  WindowId OpenChart(const std::string& title) { return OpenOther(title); }
  WindowId OpenOther(const std::string& title) {
    auto opened = std::make_unique<TypingWindow>(title);
    const auto window = static_cast<WindowId>(reinterpret_cast<std::uintptr_t>(opened->Window()));
    opened_[window] = std::move(opened);
    EXPECT_TRUE(Eventually([&] {
      return windows_->BringToFront(title) && windows_->FocusedWindow() == window;
    })) << title;
    return window;
  }
  void Minimise(WindowId window) { ::ShowWindow(opened_.at(window)->Window(), SW_MINIMIZE); }
  std::string Taken(WindowId window) { return opened_.at(window)->Taken(); }
  void SetBusy(WindowId window, bool busy) { opened_.at(window)->SetBusy(busy); }

  void PressL() {
    UserKey('L', true);
    UserKey('L', false);
  }
  void HoldShift(bool down) { UserKey(VK_SHIFT, down); }
  void SetCapsLock(bool on) {
    if (on == HasCapsLock()) return;
    UserKey(VK_CAPITAL, true);
    UserKey(VK_CAPITAL, false);
    EXPECT_TRUE(Eventually([&] { return HasCapsLock() == on; }));
  }

 private:
  static bool HasCapsLock() { return (::GetKeyState(VK_CAPITAL) & 1) != 0; }

  std::map<WindowId, std::unique_ptr<TypingWindow>> opened_;
  std::unique_ptr<ChartWindows> windows_ = MakeWindowsChartWindows();
  std::unique_ptr<KeySender> keys_ = MakeWindowsKeySender();
};

}  // namespace velumar
