#pragma once

#include <chrono>
#include <thread>

namespace velumar {

// Repeats the test until it holds, for at most fifteen seconds.
template <typename Test>
bool Eventually(const Test& test) {
  constexpr int kLooks = 1500;
  for (int look = 0; look < kLooks; ++look) {
    if (test()) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return false;
}

}  // namespace velumar
