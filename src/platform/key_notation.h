#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace velumar {

enum class NamedKey : std::uint8_t { kNone, kSpace, kEnter, kEnd, kTab };

// One key to press and release, with the modifiers held around it.
struct KeyStroke {
  bool alt = false;
  bool ctrl = false;
  bool shift = false;
  NamedKey named = NamedKey::kNone;
  char32_t character = 0;  // when no named key

  bool operator==(const KeyStroke&) const = default;
};

// The notation of keystroke texts: "%" holds Alt, "^" Ctrl and "+" Shift for the key behind it, "~"
// is Enter, a word in braces is that key ("{SPACE}", "{ENTER}", "{END}", "{TAB}"), a single
// character in braces is that character; all else is typed as it stands. Parentheses hold a
// modifier for all keys between them. Throws std::invalid_argument for a text that isn't in it.
std::vector<KeyStroke> ParseKeys(std::string_view text);

// A text in which every character stands for itself: folders and symbols arrive as they are.
std::string EscapedKeys(std::string_view text);

}  // namespace velumar
