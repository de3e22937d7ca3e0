#pragma once

#include <exception>
#include <utility>

#include "platform/services.h"

namespace velumar {

// Wraps an event's handler: what nothing in it has caught ends the handler, and the user reads why.
template <typename Handler>
auto Guarded(MessageBoxes& boxes, Handler handler) {
  return [&boxes, handler = std::move(handler)](auto... arguments) {
    try {
      handler(arguments...);
    } catch (const std::exception& error) {
      boxes.Show(error.what(), BoxIcon::kExclamation);
    }
  };
}

}  // namespace velumar
