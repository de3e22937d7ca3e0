#pragma once

#include <exception>
#include <string>
#include <string_view>
#include <utility>

#include "platform/services.h"

namespace velumar {

// Wraps an event's handler: an error that nothing in it has caught ends the handler, and a box says
// what failed and why. `task` is what the handler does, "Placing the order", and must outlive it.
template <typename Handler>
auto Guarded(MessageBoxes& boxes, std::string_view task, Handler handler) {
  return [&boxes, task, handler = std::move(handler)](auto... arguments) {
    try {
      handler(arguments...);
    } catch (const std::exception& error) {
      boxes.Show(std::string(task) + " failed.\n" + error.what(), BoxIcon::kExclamation);
    }
  };
}

}  // namespace velumar
