#include "platform/windows/foreground.h"

#include "platform/windows/held_keys.h"

namespace velumar {

namespace {

using std::chrono_literals::operator""ms;

constexpr auto kMeansPatience = 150ms;
constexpr auto kAnswerPatience = 200ms;

// Windows that share their input may pass the focus on to each other. They wait for each other too,
// so nothing is shared with a program that hangs.
class SharedInput {
 public:
  explicit SharedInput(HWND other)
      : other_(::GetWindowThreadProcessId(other, nullptr)),
        shared_(other_ != 0 && other_ != kOwn && Answers(other, kAnswerPatience) &&
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

bool ComesToFront(HWND window, std::chrono::milliseconds patience) {
  return ComesAbout(patience, [window] { return IsInFront(window); });
}

// What the system grants comes about in the other program, a moment later.
bool AskForFront(HWND window) {
  return ::SetForegroundWindow(window) != 0 && ComesToFront(window, kMeansPatience);
}

}  // namespace

bool Answers(HWND window, std::chrono::milliseconds patience) {
  DWORD_PTR ignored = 0;
  return ::SendMessageTimeoutW(window, WM_NULL, 0, 0, SMTO_ABORTIFHUNG,
                               static_cast<UINT>(patience.count()), &ignored) != 0;
}

bool IsInFront(HWND window) { return ::GetForegroundWindow() == window; }

// A program in the background may not simply take the focus. It may give it away when it shares the
// input of the program that has it, and whoever's key went down last may too. A key that no program
// knows comes between: Alt alone would open a menu wherever it is let go. With a key that somebody
// holds it would be a shortcut. Nothing waits for the window's own program, which may hang.
void TakeFocus(HWND window) {
  if (AskForFront(window)) return;
  {
    const SharedInput shared(::GetForegroundWindow());
    ::SetWindowPos(window, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_ASYNCWINDOWPOS);
    ::SetForegroundWindow(window);
  }
  if (ComesToFront(window, kMeansPatience) || PersonHoldsModifier()) return;
  constexpr WORD kNoKey = 0xE8;
  PressKey(VK_MENU, true);
  ::SetForegroundWindow(window);
  PressKey(kNoKey, true);
  PressKey(kNoKey, false);
  PressKey(VK_MENU, false);
}

}  // namespace velumar
