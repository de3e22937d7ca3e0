#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace velumar {

// Chooses the window system of this process; call it before the application object is created.
// Returns a sentence for the user if there is none that Velumar can work with.
std::optional<std::string> ChooseDisplay();

// Reports why the program ends before it has shown a window: on standard error, or in a message box
// of the system if there is no standard error.
void ReportStartFailure(const std::string& why);

// Calls `on_request` when the system asks this process to end (Ctrl+C, a log-out, a kill). The call
// comes from the event loop, also during a wait. Only one object may exist at a time.
class Termination {
 public:
  explicit Termination(std::function<void()> on_request);
  ~Termination();

 private:
  struct Watch;
  std::unique_ptr<Watch> watch_;
};

}  // namespace velumar
