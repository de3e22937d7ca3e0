#pragma once

#include <windows.h>

#include <chrono>

#include "platform/windows/waits.h"

namespace velumar {

bool IsInFront(HWND window);

// Returns true if the window's program answers within that time.
bool Answers(HWND window, std::chrono::milliseconds timeout);

// Brings the window to the front by all means that a program in the background has. It may get
// there a moment later, or not at all.
void TakeFocus(HWND window);

// Waits until the condition holds, but no longer than `timeout`. Returns true if it holds.
template <typename Condition>
bool WaitUntil(std::chrono::milliseconds timeout, Condition condition) {
  constexpr std::chrono::milliseconds kPause{5};
  const auto end = std::chrono::steady_clock::now() + timeout;
  while (!condition() && std::chrono::steady_clock::now() < end) WaitServingOthers(kPause);
  return condition();
}

}  // namespace velumar
