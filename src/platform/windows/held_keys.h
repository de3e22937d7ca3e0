#pragma once

#include <windows.h>

#include <algorithm>
#include <array>

namespace velumar {

// Returns true if the user holds Ctrl, Alt, Shift or a Windows key.
inline bool UserHoldsModifier() {
  constexpr std::array<int, 5> kModifiers{VK_SHIFT, VK_CONTROL, VK_MENU, VK_LWIN, VK_RWIN};
  return std::any_of(kModifiers.begin(), kModifiers.end(),
                     [](int key) { return (::GetAsyncKeyState(key) & 0x8000) != 0; });
}

// A press or release for SendInput, marked as this program's own.
INPUT OwnKey(WORD code, WORD scan, DWORD flags);

// While it lives, no program receives the user's keys. The destructor types them in order if
// `window` is in front; otherwise it drops the presses, since they were not meant for another
// window, and passes only releases on. There may be one object at a time. Its thread must handle
// sent messages (WaitServingOthers), or the system passes each key on after 300 ms.
class HeldKeys {
 public:
  explicit HeldKeys(HWND window);
  // False if the system refuses; keys then go to the window in front as usual.
  explicit operator bool() const { return hook_ != nullptr; }
  ~HeldKeys();
  HeldKeys(const HeldKeys&) = delete;
  HeldKeys& operator=(const HeldKeys&) = delete;

 private:
  HWND window_;
  HHOOK hook_;
};

}  // namespace velumar
