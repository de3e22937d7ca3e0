#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace velumar {

// Texts that strangers send: UTF-8, possibly damaged.

// The first character that is invisible: a control character, a formatting character (category Cf,
// including the marks of direction), or one that programs ignore.
std::optional<char32_t> InvisibleCharacter(std::string_view text);

// True if the text has only spaces of any kind, or is empty.
bool IsBlank(std::string_view text);

// Makes all of the text visible: invisible characters and bytes that aren't UTF-8 become "\x" and
// two hexadecimal digits per byte, "\" becomes "\\".
std::string Escaped(std::string_view text);

}  // namespace velumar
