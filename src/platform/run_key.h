#pragma once

namespace velumar {

// A key that trades or steps in a run, by its virtual key code: letters, digits and the space have
// the code of their character in upper case.
struct RunKeyPress {
  int code = 0;
  bool shift = false;
  bool repeated = false;  // by the keyboard, because it is held down
};

namespace run_key {

inline constexpr int kSpace = 32;
inline constexpr int kPageUp = 33;
inline constexpr int kPageDown = 34;
inline constexpr int kLeft = 37;
inline constexpr int kRight = 39;
inline constexpr int kLong = 'L';
inline constexpr int kShort = 'S';
inline constexpr int kBoard = 'B';
inline constexpr int kGoTo = 'G';
inline constexpr int kEarlierTrade = 'O';
inline constexpr int kPlan = 'N';
inline constexpr int kMark = 'M';

}  // namespace run_key

// Returns true for keys that step, and repeat while they are held down.
constexpr bool IsStepKey(int code) {
  return code == run_key::kLeft || code == run_key::kRight || code == run_key::kPageUp ||
         code == run_key::kPageDown;
}

// Returns true for keys that do something in a run. Steps need the key without Shift, which other
// windows use to move or select.
constexpr bool IsRunKey(const RunKeyPress& press) {
  switch (press.code) {
    case run_key::kLong:
    case run_key::kShort:
      return true;
    case run_key::kBoard:
    case run_key::kGoTo:
    case run_key::kEarlierTrade:
    case run_key::kPlan:
    case run_key::kMark:
    case run_key::kSpace:
    case run_key::kPageUp:
    case run_key::kPageDown:
    case run_key::kLeft:
    case run_key::kRight:
      return !press.shift;
    default:
      return false;
  }
}

}  // namespace velumar
