#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <utility>

#include "platform/event_loop.h"

namespace velumar {

// A clock that moves only where the program waits: a run of a thousand bars takes no longer than
// its computing. Events scheduled for a moment run inside the wait that reaches it, in their order.
class VirtualEventLoop : public EventLoop {
 public:
  using Milliseconds = std::chrono::milliseconds;

  void ProcessPending() override;
  void WaitFor(Milliseconds time) override;
  void Sleep(Milliseconds time) override { now_ += time; }

  // Runs once the clock has gone on by `delay` from now.
  void Schedule(Milliseconds delay, std::function<void()> event);
  // Runs at every ProcessPending, after what was scheduled.
  void SetOnPending(std::function<void()> on_pending) { on_pending_ = std::move(on_pending); }
  Milliseconds Now() const { return now_; }

 private:
  void RunDue(Milliseconds until);

  Milliseconds now_{0};
  std::multimap<Milliseconds, std::function<void()>> scheduled_;
  std::function<void()> on_pending_;
};

}  // namespace velumar
