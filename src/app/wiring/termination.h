#pragma once

#include <functional>
#include <memory>

namespace velumar {

// Turns the system's request to end this process (Ctrl+C, a log-out, a kill) into an event: it runs
// between other window events, also inside a wait. At most one object lives at a time.
class Termination {
 public:
  explicit Termination(std::function<void()> on_request);
  ~Termination();

 private:
  struct Watch;
  std::unique_ptr<Watch> watch_;
};

}  // namespace velumar
