#pragma once

#include <windows.h>

#include <algorithm>
#include <chrono>
#include <functional>

#include "base/handle_windows.h"

namespace velumar {

// Waits without running window events. Messages that other programs send to windows of this thread
// are answered, since those programs would hang otherwise. Also checks for messages regularly: the
// system treats the windows of a thread that hasn't done so for seconds as hanging, and fades them.
inline void WaitServingOthers(std::chrono::milliseconds time) {
  using std::chrono::milliseconds;
  constexpr milliseconds kLongestPause{500};
  const auto end = std::chrono::steady_clock::now() + time;
  const auto left = [end] {
    return std::chrono::ceil<milliseconds>(end - std::chrono::steady_clock::now());
  };
  for (milliseconds rest = left(); rest.count() > 0; rest = left()) {
    ::MsgWaitForMultipleObjects(0, nullptr, FALSE,
                                static_cast<DWORD>(std::min(rest, kLongestPause).count()),
                                QS_SENDMESSAGE);
    MSG message;
    ::PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE);
  }
}

// A timer that expires once, never early.
class WaitableTimer {
 public:
  // Throws std::runtime_error if the system has no timer.
  explicit WaitableTimer(std::chrono::milliseconds time);

  // Returns when the timer expires, or earlier once `wanted` returns false. Calls `let_events_run`
  // whenever there are messages for windows of this thread; it must handle all of them.
  void Wait(const std::function<void()>& let_events_run, const std::function<bool()>& wanted);

 private:
  NativeHandle timer_;
};

}  // namespace velumar
