#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <utility>

#include "platform/event_loop.h"

namespace velumar {

// A clock that moves only when the program waits, so a run of a thousand bars takes only its
// computing time. Scheduled events run, in order, inside the wait that reaches their time.
class VirtualEventLoop : public EventLoop {
 public:
  using Milliseconds = std::chrono::milliseconds;

  void ProcessPending() override;
  void WaitFor(Milliseconds time) override;
  void Sleep(Milliseconds time) override { now_ += time; }

  // Runs the event `delay` from now.
  void Schedule(Milliseconds delay, std::function<void()> event);
  // Runs at every ProcessPending, after scheduled events.
  void SetOnPending(std::function<void()> on_pending) { on_pending_ = std::move(on_pending); }
  Milliseconds Now() const { return now_; }

 private:
  void RunDue(Milliseconds until);

  Milliseconds now_{0};
  std::multimap<Milliseconds, std::function<void()>> scheduled_;
  std::function<void()> on_pending_;
};

}  // namespace velumar
