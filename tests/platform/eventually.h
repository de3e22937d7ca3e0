#pragma once

#include <chrono>
#include <thread>

namespace velumar {

// Repeats the test until it holds; false if it never did.
template <typename Test>
bool Eventually(const Test& test, double seconds = 20) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
  while (!test()) {
    if (std::chrono::steady_clock::now() > end) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(25));
  }
  return true;
}

}  // namespace velumar
