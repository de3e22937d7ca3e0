#pragma once

#include <memory>

#include "platform/event_loop.h"

namespace velumar {

// The window events of this process. Once the application quits, waits return at once.
class QtEventLoop : public EventLoop {
 public:
  QtEventLoop();
  ~QtEventLoop() override;

  void ProcessPending() override;
  void WaitFor(std::chrono::milliseconds time) override;
  void Sleep(std::chrono::milliseconds time) override;

 private:
  class QuitWatch;
  std::unique_ptr<QuitWatch> quit_watch_;  // where waits don't notice it by themselves
};

}  // namespace velumar
