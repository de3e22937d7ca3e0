#pragma once

#include <windows.h>

#include <chrono>

#include "platform/windows/waits.h"

namespace velumar {

bool IsInFront(HWND window);

// Whether the window's program answers within that time.
bool Answers(HWND window, std::chrono::milliseconds patience);

// Brings the window to the front by the means that the system leaves to a program in the
// background. It may come there a moment later, or not at all.
void TakeFocus(HWND window);

// Waits until the condition holds, that long at most, and returns whether it does.
template <typename Condition>
bool ComesAbout(std::chrono::milliseconds patience, Condition condition) {
  constexpr std::chrono::milliseconds kPause{5};
  const auto end = std::chrono::steady_clock::now() + patience;
  while (!condition() && std::chrono::steady_clock::now() < end) WaitServingOthers(kPause);
  return condition();
}

}  // namespace velumar
