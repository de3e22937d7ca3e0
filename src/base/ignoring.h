#pragma once

#include <exception>
#include <utility>

namespace velumar {

// Runs a step and ignores its exceptions, for steps whose failure must not stop what follows.
template <typename Step>
void IgnoringErrors(Step&& step) {
  try {
    std::forward<Step>(step)();
  } catch (const std::exception&) {
    // What the step would have set keeps its value.
  }
}

}  // namespace velumar
