#include "platform/windows/held_keys.h"

#include <utility>
#include <vector>

#include "platform/windows/foreground.h"

namespace velumar {

namespace {

constexpr ULONG_PTR kOwnKeyMark = 0x56454C55;

// The system calls a function without an argument for an object.
std::vector<INPUT>& Held() {
  static std::vector<INPUT> held;
  return held;
}

// Makes an input of the same key. A character typed without a key has its code unit in place of the
// scan code.
INPUT ToInput(const KBDLLHOOKSTRUCT& key) {
  const bool character = key.vkCode == VK_PACKET;
  const DWORD flags = (character ? KEYEVENTF_UNICODE : 0) |
                      ((key.flags & LLKHF_EXTENDED) != 0 ? KEYEVENTF_EXTENDEDKEY : 0) |
                      ((key.flags & LLKHF_UP) != 0 ? KEYEVENTF_KEYUP : 0);
  return OwnKey(character ? WORD{0} : static_cast<WORD>(key.vkCode),
                static_cast<WORD>(key.scanCode), flags);
}

LRESULT CALLBACK Hold(int code, WPARAM message, LPARAM event) {
  const auto& key = *reinterpret_cast<const KBDLLHOOKSTRUCT*>(event);
  if (code != HC_ACTION || key.dwExtraInfo == kOwnKeyMark) {
    return ::CallNextHookEx(nullptr, code, message, event);
  }
  Held().push_back(ToInput(key));
  return 1;
}

}  // namespace

INPUT OwnKey(WORD code, WORD scan, DWORD flags) {
  INPUT input{};
  input.type = INPUT_KEYBOARD;
  input.ki.wVk = code;
  input.ki.wScan = scan;
  input.ki.dwFlags = flags;
  input.ki.dwExtraInfo = kOwnKeyMark;
  return input;
}

HeldKeys::HeldKeys(HWND window)
    : window_(window),
      hook_(::SetWindowsHookExW(WH_KEYBOARD_LL, Hold, ::GetModuleHandleW(nullptr), 0)) {}

// Keys that are typed during the loop must come after the earlier ones. Releases are always passed
// on: the key may have been pressed before keys were held.
HeldKeys::~HeldKeys() {
  while (!Held().empty()) {
    std::vector<INPUT> keys = std::exchange(Held(), {});
    if (!IsInFront(window_)) {
      std::erase_if(keys, [](const INPUT& key) { return (key.ki.dwFlags & KEYEVENTF_KEYUP) == 0; });
    }
    ::SendInput(static_cast<UINT>(keys.size()), keys.data(), sizeof(INPUT));
  }
  if (hook_ != nullptr) ::UnhookWindowsHookEx(hook_);
}

}  // namespace velumar
