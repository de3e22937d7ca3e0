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

// Parses a keystroke text: "%" holds Alt, "^" Ctrl and "+" Shift for the next key, "~" is Enter, a
// word in braces is that key ("{SPACE}", "{ENTER}", "{END}", "{TAB}"), a single character in braces
// is that character, and all else is typed as it is. A modifier before parentheses is held for all
// keys between them. Throws std::invalid_argument saying what is wrong with the text, also for a
// control character, which no key types.
std::vector<KeyStroke> ParseKeys(std::string_view text);

// Escapes a text so that it is typed character by character, for folders and symbols.
std::string EscapedKeys(std::string_view text);

}  // namespace velumar
