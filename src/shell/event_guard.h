#pragma once

#include <exception>
#include <string>
#include <string_view>
#include <utility>

#include "platform/services.h"

namespace velumar {

// Wraps event handlers: an error that a handler doesn't catch is shown in a box that says what
// failed and why. `boxes` must outlive the wrapped handlers.
class EventGuard {
 public:
  explicit EventGuard(MessageBoxes& boxes) : boxes_(boxes) {}

  // `task` says what the handler does, such as "Placing the order", and must outlive the result.
  template <typename Handler>
  auto operator()(std::string_view task, Handler handler) const {
    return [&boxes = boxes_, task, handler = std::move(handler)](auto... arguments) {
      try {
        handler(arguments...);
      } catch (const std::exception& error) {
        boxes.Show(std::string(task) + " failed.\n" + error.what(), BoxIcon::kExclamation);
      }
    };
  }

 private:
  MessageBoxes& boxes_;
};

}  // namespace velumar
