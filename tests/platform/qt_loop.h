#pragma once

#include <functional>

namespace velumar {

// Runs the events of a program without windows until `done` holds, five seconds at most.
void RunEventsUntil(const std::function<bool()>& done);

}  // namespace velumar
