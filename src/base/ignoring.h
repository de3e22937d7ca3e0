#pragma once

#include <exception>
#include <utility>

namespace velumar {

// Runs a step whose failure is passed over, because the road that it belongs to goes on with its
// next step and nobody could be told.
template <typename Step>
void IgnoringErrors(Step&& step) {
  try {
    std::forward<Step>(step)();
  } catch (const std::exception&) {
    // The step's result stays unset.
  }
}

}  // namespace velumar
