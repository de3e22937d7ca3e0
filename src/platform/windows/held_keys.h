#pragma once

#include <windows.h>

namespace velumar {

// What this program writes into its own keys, to know them again.
inline constexpr ULONG_PTR kOwnKeyMark = 0x56454C55;

// While it lives, no program receives a key that isn't this program's own. When it ends, they are
// typed in their order into the window that is in front by then. One object at a time; its thread
// has to serve what is sent to it, or the system passes the keys on after 300 ms.
class HeldKeys {
 public:
  HeldKeys();
  // False if the system refuses: keys then go on to the window in front.
  explicit operator bool() const { return hook_ != nullptr; }
  ~HeldKeys();
  HeldKeys(const HeldKeys&) = delete;
  HeldKeys& operator=(const HeldKeys&) = delete;

 private:
  HHOOK hook_;
};

}  // namespace velumar
