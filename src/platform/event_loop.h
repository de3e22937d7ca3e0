#pragma once

#include <chrono>
#include <cstdint>

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

// One wait at a time, or a row of them as in a slide. Window events run meanwhile, so a handler can
// wait again inside; each wait ends at its own time.
class clsWaitableTimer {
 public:
  explicit clsWaitableTimer(EventLoop& events) : events_(events) {}
  // A failure of the wait is thrown on with "[clsWaitableTimer.Wait]" in front of its text.
  void Wait(std::int32_t milliseconds);

 private:
  EventLoop& events_;
};

// The one wait of the system. 0 means a second, and the caller's variable then says so.
void WaitMilliseconds(EventLoop& events, std::int16_t& milliseconds);
// The same for a fixed time.
void WaitMilliseconds(EventLoop& events, std::int16_t&& milliseconds);

}  // namespace velumar
