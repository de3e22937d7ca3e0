#pragma once

#include <windows.h>

#include <algorithm>
#include <array>

namespace velumar {

// Whether somebody holds Ctrl, Alt, Shift or a Windows key.
inline bool PersonHoldsModifier() {
  constexpr std::array<int, 5> kModifiers{VK_SHIFT, VK_CONTROL, VK_MENU, VK_LWIN, VK_RWIN};
  return std::any_of(kModifiers.begin(), kModifiers.end(),
                     [](int key) { return (::GetAsyncKeyState(key) & 0x8000) != 0; });
}

// A press or release as SendInput takes it, marked so that this program knows its own keys.
INPUT OwnKey(WORD code, WORD scan, DWORD flags);

// While it lives, no program receives a key that isn't this program's own. At its end the keys are
// typed in their order into `window`. If another window is in front by then, they are dropped: they
// were not meant for it. One object at a time; its thread has to serve what is sent to it, or the
// system passes the keys on after 300 ms.
class HeldKeys {
 public:
  explicit HeldKeys(HWND window);
  // False if the system refuses: keys then go on to the window in front.
  explicit operator bool() const { return hook_ != nullptr; }
  ~HeldKeys();
  HeldKeys(const HeldKeys&) = delete;
  HeldKeys& operator=(const HeldKeys&) = delete;

 private:
  HWND window_;
  HHOOK hook_;
};

}  // namespace velumar
