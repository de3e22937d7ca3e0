#pragma once

#include <chrono>

namespace velumar {

// The one thread's window events. Handlers of clicks run inside both calls.
class EventLoop {
 public:
  virtual ~EventLoop() = default;
  // Lets everything run that is pending, and returns at once when nothing is.
  virtual void ProcessPending() = 0;
  // Returns when the time has passed, never earlier; events run meanwhile.
  virtual void WaitFor(std::chrono::milliseconds time) = 0;
  // The same without letting any event run.
  virtual void Sleep(std::chrono::milliseconds time) = 0;
};

}  // namespace velumar
