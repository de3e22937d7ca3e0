#pragma once

#include "platform/event_loop.h"

namespace velumar {

// The window events of this process. Once the application quits, waits come back at once.
class QtEventLoop : public EventLoop {
 public:
  void ProcessPending() override;
  void WaitFor(std::chrono::milliseconds time) override;
  void Sleep(std::chrono::milliseconds time) override;
};

}  // namespace velumar
