#include "scoreserver/visible_text.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace velumar {

namespace {

struct Range {
  char32_t first;
  char32_t last;
};

// Unicode 15: the categories Cc, Cf, Zl and Zp (DerivedGeneralCategory.txt), and the rest of
// Default_Ignorable_Code_Point (DerivedCoreProperties.txt).
constexpr std::array<Range, 27> kInvisible{
    {{0x0, 0x1F},        {0x7F, 0x9F},       {0xAD, 0xAD},       {0x34F, 0x34F},
     {0x600, 0x605},     {0x61C, 0x61C},     {0x6DD, 0x6DD},     {0x70F, 0x70F},
     {0x890, 0x891},     {0x8E2, 0x8E2},     {0x115F, 0x1160},   {0x17B4, 0x17B5},
     {0x180B, 0x180F},   {0x200B, 0x200F},   {0x2028, 0x202E},   {0x2060, 0x206F},
     {0x3164, 0x3164},   {0xFE00, 0xFE0F},   {0xFEFF, 0xFEFF},   {0xFFA0, 0xFFA0},
     {0xFFF0, 0xFFFB},   {0x110BD, 0x110BD}, {0x110CD, 0x110CD}, {0x13430, 0x1343F},
     {0x1BCA0, 0x1BCA3}, {0x1D173, 0x1D17A}, {0xE0000, 0xE0FFF}}};

// The category Zs, and the blank Braille pattern.
constexpr std::array<Range, 8> kSpaces{{{0x20, 0x20},
                                        {0xA0, 0xA0},
                                        {0x1680, 0x1680},
                                        {0x2000, 0x200A},
                                        {0x202F, 0x202F},
                                        {0x205F, 0x205F},
                                        {0x2800, 0x2800},
                                        {0x3000, 0x3000}}};

template <std::size_t Count>
bool In(const std::array<Range, Count>& ranges, char32_t character) {
  return std::ranges::any_of(ranges, [character](const Range& range) {
    return range.first <= character && character <= range.last;
  });
}

// The first character of a text, or a byte that is not UTF-8.
struct Character {
  std::optional<char32_t> value;
  std::size_t length = 1;  // bytes
};

Character FirstOf(std::string_view text) {
  const auto at = [text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned char first = at(0);
  if (first < 0x80) return {first};
  const std::size_t length = first < 0xC2   ? 0
                             : first < 0xE0 ? 2
                             : first < 0xF0 ? 3
                             : first < 0xF5 ? 4
                                            : 0;
  if (length == 0 || length > text.size()) return {};
  char32_t value = first & (0x7FU >> length);
  for (std::size_t i = 1; i < length; ++i) {
    if ((at(i) & 0xC0U) != 0x80) return {};
    value = value << 6U | (at(i) & 0x3FU);
  }
  const bool overlong = (length == 3 && value < 0x800) || (length == 4 && value < 0x10000);
  const bool surrogate = value >= 0xD800 && value <= 0xDFFF;
  if (overlong || surrogate || value > 0x10FFFF) return {};
  return {value, length};
}

void AppendEscaped(std::string& out, std::string_view bytes) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  for (const char byte : bytes) {
    const auto value = static_cast<unsigned char>(byte);
    out += "\\x";
    out += kDigits[value >> 4U];
    out += kDigits[value & 15U];
  }
}

}  // namespace

std::optional<char32_t> InvisibleCharacter(std::string_view text) {
  while (!text.empty()) {
    const Character character = FirstOf(text);
    if (character.value && In(kInvisible, *character.value)) return character.value;
    text.remove_prefix(character.length);
  }
  return std::nullopt;
}

bool IsBlank(std::string_view text) {
  while (!text.empty()) {
    const Character character = FirstOf(text);
    if (!character.value || !In(kSpaces, *character.value)) return false;
    text.remove_prefix(character.length);
  }
  return true;
}

std::string Escaped(std::string_view text) {
  std::string out;
  while (!text.empty()) {
    const Character character = FirstOf(text);
    const std::string_view bytes = text.substr(0, character.length);
    if (!character.value || In(kInvisible, *character.value)) {
      AppendEscaped(out, bytes);
    } else {
      out += bytes == "\\" ? "\\\\" : bytes;
    }
    text.remove_prefix(bytes.size());
  }
  return out;
}

}  // namespace velumar
