#include "platform/windows/foreground.h"

#include "platform/windows/held_keys.h"

namespace velumar {

namespace {

using std::chrono_literals::operator""ms;

constexpr auto kForegroundTimeout = 150ms;
constexpr auto kReplyTimeout = 200ms;

// Threads that share their input may give each other's windows the focus. They also wait for each
// other, so input is never shared with a program that hangs.
class SharedInput {
 public:
  explicit SharedInput(HWND other)
      : other_(::GetWindowThreadProcessId(other, nullptr)),
        shared_(other_ != 0 && other_ != kOwn && Answers(other, kReplyTimeout) &&
                ::AttachThreadInput(kOwn, other_, TRUE) != 0) {}
  ~SharedInput() {
    if (shared_) ::AttachThreadInput(kOwn, other_, FALSE);
  }
  SharedInput(const SharedInput&) = delete;
  SharedInput& operator=(const SharedInput&) = delete;

 private:
  const DWORD kOwn = ::GetCurrentThreadId();
  DWORD other_;
  bool shared_;
};

void PressKey(WORD key, bool down) {
  INPUT input = OwnKey(key, 0, down ? 0 : KEYEVENTF_KEYUP);
  ::SendInput(1, &input, sizeof input);
}

bool ComesToFront(HWND window, std::chrono::milliseconds timeout) {
  return WaitUntil(timeout, [window] { return IsInFront(window); });
}

// If the system allows it, the other program gets the focus a moment later.
bool AskForFront(HWND window) {
  return ::SetForegroundWindow(window) != 0 && ComesToFront(window, kForegroundTimeout);
}

}  // namespace

bool Answers(HWND window, std::chrono::milliseconds timeout) {
  DWORD_PTR ignored = 0;
  return ::SendMessageTimeoutW(window, WM_NULL, 0, 0, SMTO_ABORTIFHUNG,
                               static_cast<UINT>(timeout.count()), &ignored) != 0;
}

bool IsInFront(HWND window) { return ::GetForegroundWindow() == window; }

// A program in the background may not simply set the focus. It may if it shares the input of the
// program that has it, or if the last key pressed came from it. Pressing Alt alone would open a
// menu on release, so a key without a meaning is pressed in between; together with a key that the
// user holds it would be a shortcut. Nothing here waits for the window's own program, which may
// hang.
void TakeFocus(HWND window) {
  if (AskForFront(window)) return;
  {
    const SharedInput shared(::GetForegroundWindow());
    ::SetWindowPos(window, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_ASYNCWINDOWPOS);
    ::SetForegroundWindow(window);
  }
  if (ComesToFront(window, kForegroundTimeout) || UserHoldsModifier()) return;
  constexpr WORD kNoKey = 0xE8;
  PressKey(VK_MENU, true);
  ::SetForegroundWindow(window);
  PressKey(kNoKey, true);
  PressKey(kNoKey, false);
  PressKey(VK_MENU, false);
}

}  // namespace velumar
