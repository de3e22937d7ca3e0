#pragma once

#include <string_view>

namespace velumar {

inline bool IsDigit(char c) { return c >= '0' && c <= '9'; }
inline bool IsLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

// Without blanks and tabs at both ends.
inline std::string_view Stripped(std::string_view text) {
  while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
  while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) text.remove_suffix(1);
  return text;
}

}  // namespace velumar
