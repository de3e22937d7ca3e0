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

}  // namespace velumar
