#pragma once

#include <chrono>
#include <cstdint>

namespace velumar {

// What keeps a key from being typed into the chart program just now.
enum class Obstacle : std::uint8_t { kNone, kOtherWindow, kNoFocus, kPersonTypes, kNoSuchKey };

// How long the keys of one text wait altogether to be taken in.
inline constexpr std::chrono::milliseconds kAnswerPatience{2000};
// How often an obstacle is looked at.
inline constexpr std::chrono::milliseconds kLook{10};

// How long an obstacle is borne with. While a window is coming up or going away, none has the
// focus.
constexpr std::chrono::milliseconds PatienceWith(Obstacle obstacle) {
  constexpr std::chrono::milliseconds kFocusPatience{500};
  constexpr std::chrono::milliseconds kPersonPatience{1000};
  switch (obstacle) {
    case Obstacle::kNoFocus:
      return kFocusPatience;
    case Obstacle::kPersonTypes:
      return kPersonPatience;
    default:
      return std::chrono::milliseconds(0);
  }
}

}  // namespace velumar
