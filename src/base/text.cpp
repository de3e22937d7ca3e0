#include "base/text.h"

#include <stdexcept>

namespace velumar {

std::string Trimmed(std::string_view text) {
  const auto first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return std::string(text.substr(first, text.find_last_not_of(' ') - first + 1));
}

std::string UpperCased(std::string_view text) {
  std::string upper(text);
  for (char& c : upper) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  }
  return upper;
}

std::string NormalisedSymbol(std::string_view text) { return UpperCased(Trimmed(text)); }

std::string WithClosingBackslash(std::string_view text) {
  std::string closed(text);
  if (!closed.ends_with('\\')) closed += '\\';
  return closed;
}

std::string Latin1ToUtf8(std::string_view bytes) {
  std::string utf8;
  utf8.reserve(bytes.size());
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x80) {
      utf8 += c;
    } else {
      utf8 += static_cast<char>(0xC0 | (byte >> 6));
      utf8 += static_cast<char>(0x80 | (byte & 0x3F));
    }
  }
  return utf8;
}

std::string Utf8ToLatin1(std::string_view text) {
  std::string bytes;
  bytes.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto lead = static_cast<unsigned char>(text[i]);
    if (lead < 0x80) {
      bytes += text[i];
      continue;
    }
    const bool fits = (lead == 0xC2 || lead == 0xC3) && i + 1 < text.size();
    if (!fits) {
      throw std::invalid_argument("\"" + std::string(text) +
                                  "\" has a character that market data files can't store");
    }
    const auto follow = static_cast<unsigned char>(text[++i]);
    bytes += static_cast<char>(((lead & 0x03) << 6) | (follow & 0x3F));
  }
  return bytes;
}

}  // namespace velumar
