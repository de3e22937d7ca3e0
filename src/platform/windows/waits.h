#pragma once

#include <windows.h>

#include <algorithm>
#include <chrono>
#include <functional>

#include "base/handle_windows.h"

namespace velumar {

// Waits without letting window events run. What other programs send to windows of this thread is
// answered all the same: they would hang meanwhile. The system takes the windows of a thread that
// hasn't looked for seconds to hang, and fades them: so it looks unasked too.
inline void WaitServingOthers(std::chrono::milliseconds time) {
  using std::chrono::milliseconds;
  constexpr milliseconds kLongestLook{500};
  const auto end = std::chrono::steady_clock::now() + time;
  const auto left = [end] {
    return std::chrono::ceil<milliseconds>(end - std::chrono::steady_clock::now());
  };
  for (milliseconds rest = left(); rest.count() > 0; rest = left()) {
    ::MsgWaitForMultipleObjects(0, nullptr, FALSE,
                                static_cast<DWORD>(std::min(rest, kLongestLook).count()),
                                QS_SENDMESSAGE);
    MSG message;
    ::PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE);
  }
}

// Runs out once, never early.
class WaitableTimer {
 public:
  // Throws std::runtime_error when the system has no timer.
  explicit WaitableTimer(std::chrono::milliseconds time);

  // Returns when the time is over, or earlier once `wanted` says no. Whenever a message has come
  // for a window of this thread, `let_events_run` is called; it handles all there are.
  void Wait(const std::function<void()>& let_events_run, const std::function<bool()>& wanted);

 private:
  NativeHandle timer_;
};

}  // namespace velumar
