#include "platform/windows/waits.h"

#include <stdexcept>

#include "base/windows_text.h"

namespace velumar {

namespace {

[[noreturn]] void Fail() {
  throw std::runtime_error("A timer failed: " + SystemErrorText(::GetLastError()));
}

}  // namespace

// The timer has no name, since two timers with one name would be the same.
WaitableTimer::WaitableTimer(std::chrono::milliseconds time)
    : timer_(::CreateWaitableTimerW(nullptr, TRUE, nullptr)) {
  constexpr LONGLONG kTicksPerMillisecond = 10000;
  if (!timer_) Fail();
  LARGE_INTEGER due;
  due.QuadPart = -time.count() * kTicksPerMillisecond;  // negative: from now
  if (::SetWaitableTimer(timer_.get(), &due, 0, nullptr, nullptr, FALSE) == 0) Fail();
}

void WaitableTimer::Wait(const std::function<void()>& let_events_run,
                         const std::function<bool()>& wanted) {
  HANDLE const timer = timer_.get();
  while (wanted()) {
    const DWORD came = ::MsgWaitForMultipleObjects(1, &timer, FALSE, INFINITE, QS_ALLINPUT);
    if (came == WAIT_FAILED) Fail();
    let_events_run();
    if (came == WAIT_OBJECT_0) return;
  }
}

}  // namespace velumar
