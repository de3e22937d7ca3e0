#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace velumar {

// Texts that strangers send, as UTF-8 with whatever else is in them.

// The first character that no screen shows: a control character, one that only changes how others
// stand (all of Unicode's category Cf, with it the marks of direction), or one that is ignored.
std::optional<char32_t> InvisibleCharacter(std::string_view text);

// True for a text of nothing but spaces of any kind, and for an empty one.
bool IsBlank(std::string_view text);

// The text as any screen can show it: invisible characters and bytes that aren't UTF-8 stand as
// "\x" and two hexadecimal digits a byte, "\" as "\\".
std::string Escaped(std::string_view text);

}  // namespace velumar
