#pragma once

#include <chrono>
#include <cstdint>

namespace velumar {

// The window events of the program's one thread.
class EventLoop {
 public:
  virtual ~EventLoop() = default;
  // Runs all pending events, click handlers included.
  virtual void ProcessPending() = 0;
  // Runs events until the time has passed; never returns early.
  virtual void WaitFor(std::chrono::milliseconds time) = 0;
  // Waits without running events.
  virtual void Sleep(std::chrono::milliseconds time) = 0;
  // Of a clock that never goes back, from any start.
  virtual std::chrono::milliseconds Now() const = 0;
};

// The clock of the system for Now().
inline std::chrono::milliseconds SteadyNow() {
  return std::chrono::duration_cast<std::chrono::milliseconds>(
      std::chrono::steady_clock::now().time_since_epoch());
}

// Waits, once or repeatedly as in a slide. Events run during a wait, so a handler may wait inside
// another wait; each wait ends at its own time.
class clsWaitableTimer {
 public:
  explicit clsWaitableTimer(EventLoop& events) : events_(events) {}
  // Throws std::runtime_error whose text begins with "[clsWaitableTimer.Wait]" if waiting fails.
  void Wait(std::int32_t milliseconds);

 private:
  EventLoop& events_;
};

// Waits that long while events run. 0 means a second; the caller's variable is then set to 1000.
void WaitMilliseconds(EventLoop& events, std::int16_t& milliseconds);
void WaitMilliseconds(EventLoop& events, std::int16_t&& milliseconds);

}  // namespace velumar
