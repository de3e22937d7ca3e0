#include "platform/event_loop.h"

#include <stdexcept>
#include <string>

namespace velumar {

void clsWaitableTimer::Wait(std::int32_t milliseconds) {
  try {
    events_.WaitFor(std::chrono::milliseconds(milliseconds));
  } catch (const std::exception& error) {
    throw std::runtime_error("[clsWaitableTimer.Wait]" + std::string(error.what()));
  }
}

void WaitMilliseconds(EventLoop& events, std::int16_t& milliseconds) {
  constexpr std::int16_t kOneSecond = 1000;
  if (milliseconds == 0) milliseconds = kOneSecond;
  clsWaitableTimer(events).Wait(milliseconds);
}

void WaitMilliseconds(EventLoop& events, std::int16_t&& milliseconds) {
  WaitMilliseconds(events, milliseconds);
}

}  // namespace velumar
