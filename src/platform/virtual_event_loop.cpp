#include "platform/virtual_event_loop.h"

#include <algorithm>
#include <utility>

namespace velumar {

void VirtualEventLoop::ProcessPending() {
  RunDue(now_);
  if (on_pending_) on_pending_();
}

void VirtualEventLoop::WaitFor(Milliseconds time) {
  const Milliseconds end = now_ + time;
  RunDue(end);
  // An event may have waited longer itself.
  now_ = std::max(now_, end);
}

void VirtualEventLoop::Schedule(Milliseconds delay, std::function<void()> event) {
  scheduled_.emplace(now_ + delay, std::move(event));
}

void VirtualEventLoop::RunDue(Milliseconds until) {
  while (!scheduled_.empty() && scheduled_.begin()->first <= until) {
    const auto next = scheduled_.begin();
    now_ = std::max(now_, next->first);
    const std::function<void()> event = std::move(next->second);
    scheduled_.erase(next);
    event();
  }
}

}  // namespace velumar
