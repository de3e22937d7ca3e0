#pragma once

#include <chrono>
#include <functional>

#include "base/handle_windows.h"

namespace velumar {

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
