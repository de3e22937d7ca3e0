#pragma once

#include <functional>
#include <memory>

class QCoreApplication;

namespace velumar {

// The event loop of a program without windows.
class QtLoop {
 public:
  QtLoop();
  ~QtLoop();

  // Runs events until `done` holds, five seconds at most.
  void RunUntil(const std::function<bool()>& done);

 private:
  std::unique_ptr<QCoreApplication> application_;
};

}  // namespace velumar
