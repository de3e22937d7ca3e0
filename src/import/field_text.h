#pragma once

#include <string_view>

namespace velumar {

inline constexpr std::string_view kDigits = "0123456789";

inline bool IsDigit(char c) { return c >= '0' && c <= '9'; }
inline bool IsBlank(char c) { return c == ' ' || c == '\t'; }
inline bool IsLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

inline bool IsBlankLine(std::string_view line) {
  return line.find_first_not_of(" \t\x1A") == std::string_view::npos;
}

// Without blanks and tabs at both ends.
inline std::string_view Stripped(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

}  // namespace velumar
