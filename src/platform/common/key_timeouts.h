#pragma once

#include <chrono>
#include <cstdint>

namespace velumar {

// Why a key can't be typed into the chart program at the moment.
enum class Obstacle : std::uint8_t { kNone, kOtherWindow, kNoFocus, kUserTypes, kNoSuchKey };

// How long the chart program may take in all to process the keys of one text.
inline constexpr std::chrono::milliseconds kAnswerTimeout{2000};
// How long to wait for an obstacle to go away. No window has the focus while one opens or closes.
constexpr std::chrono::milliseconds TimeoutFor(Obstacle obstacle) {
  constexpr std::chrono::milliseconds kFocusTimeout{500};
  constexpr std::chrono::milliseconds kUserTimeout{1000};
  switch (obstacle) {
    case Obstacle::kNoFocus:
      return kFocusTimeout;
    case Obstacle::kUserTypes:
      return kUserTimeout;
    default:
      return std::chrono::milliseconds(0);
  }
}

// Calls `type` until it returns no obstacle, and `wait` in between. Returns false for an obstacle
// that does not go away in time.
template <typename Type, typename Wait>
bool TypeInTime(Type type, Wait wait) {
  constexpr std::chrono::milliseconds kCheckInterval{10};
  const auto start = std::chrono::steady_clock::now();
  for (Obstacle obstacle = type(); obstacle != Obstacle::kNone; obstacle = type()) {
    if (std::chrono::steady_clock::now() - start >= TimeoutFor(obstacle)) return false;
    wait(kCheckInterval);
  }
  return true;
}

}  // namespace velumar
