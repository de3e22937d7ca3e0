#include "platform/windows/held_keys.h"

#include <utility>
#include <vector>

namespace velumar {

namespace {

// The system calls a function that knows of no object.
std::vector<INPUT>& Held() {
  static std::vector<INPUT> held;
  return held;
}

// The key once more. What types characters without keys has them in place of the key's number.
INPUT Again(const KBDLLHOOKSTRUCT& key) {
  INPUT input{};
  input.type = INPUT_KEYBOARD;
  const bool character = key.vkCode == VK_PACKET;
  input.ki.wVk = character ? WORD{0} : static_cast<WORD>(key.vkCode);
  input.ki.wScan = static_cast<WORD>(key.scanCode);
  input.ki.dwFlags = (character ? KEYEVENTF_UNICODE : 0) |
                     ((key.flags & LLKHF_EXTENDED) != 0 ? KEYEVENTF_EXTENDEDKEY : 0) |
                     ((key.flags & LLKHF_UP) != 0 ? KEYEVENTF_KEYUP : 0);
  input.ki.dwExtraInfo = kOwnKeyMark;
  return input;
}

LRESULT CALLBACK Hold(int code, WPARAM message, LPARAM event) {
  const auto& key = *reinterpret_cast<const KBDLLHOOKSTRUCT*>(event);
  if (code != HC_ACTION || key.dwExtraInfo == kOwnKeyMark) {
    return ::CallNextHookEx(nullptr, code, message, event);
  }
  Held().push_back(Again(key));
  return 1;
}

}  // namespace

HeldKeys::HeldKeys()
    : hook_(::SetWindowsHookExW(WH_KEYBOARD_LL, Hold, ::GetModuleHandleW(nullptr), 0)) {}

// Keys that come meanwhile have to wait for those before them.
HeldKeys::~HeldKeys() {
  while (!Held().empty()) {
    std::vector<INPUT> keys = std::exchange(Held(), {});
    ::SendInput(static_cast<UINT>(keys.size()), keys.data(), sizeof(INPUT));
  }
  if (hook_ != nullptr) ::UnhookWindowsHookEx(hook_);
}

}  // namespace velumar
