#include "scoreserver/score.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <optional>
#include <span>

#include "base/dates.h"
#include "base/number_text.h"
#include "results/figure_texts.h"

namespace velumar {

namespace {

// Texts that strangers send are UTF-8, possibly damaged.

struct Range {
  char32_t first;
  char32_t last;
};

// Unicode 15: the categories Cc, Cf, Zl and Zp (DerivedGeneralCategory.txt), and the rest of
// Default_Ignorable_Code_Point (DerivedCoreProperties.txt).
constexpr Range kInvisible[] = {
    {0x0, 0x1F},        {0x7F, 0x9F},       {0xAD, 0xAD},       {0x34F, 0x34F},
    {0x600, 0x605},     {0x61C, 0x61C},     {0x6DD, 0x6DD},     {0x70F, 0x70F},
    {0x890, 0x891},     {0x8E2, 0x8E2},     {0x115F, 0x1160},   {0x17B4, 0x17B5},
    {0x180B, 0x180F},   {0x200B, 0x200F},   {0x2028, 0x202E},   {0x2060, 0x206F},
    {0x3164, 0x3164},   {0xFE00, 0xFE0F},   {0xFEFF, 0xFEFF},   {0xFFA0, 0xFFA0},
    {0xFFF0, 0xFFFB},   {0x110BD, 0x110BD}, {0x110CD, 0x110CD}, {0x13430, 0x1343F},
    {0x1BCA0, 0x1BCA3}, {0x1D173, 0x1D17A}, {0xE0000, 0xE0FFF}};

// The category Zs, and the blank Braille pattern.
constexpr Range kSpaces[] = {{0x20, 0x20},     {0xA0, 0xA0},     {0x1680, 0x1680},
                             {0x2000, 0x200A}, {0x202F, 0x202F}, {0x205F, 0x205F},
                             {0x2800, 0x2800}, {0x3000, 0x3000}};

bool In(std::span<const Range> ranges, char32_t character) {
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

// The first character that is invisible: a control character, a formatting character (category Cf,
// including the marks of direction), or one that programs ignore.
std::optional<char32_t> InvisibleCharacter(std::string_view text) {
  while (!text.empty()) {
    const Character character = FirstOf(text);
    if (character.value && In(kInvisible, *character.value)) return character.value;
    text.remove_prefix(character.length);
  }
  return std::nullopt;
}

// True if the text has only spaces of any kind, or is empty.
bool IsBlank(std::string_view text) {
  while (!text.empty()) {
    const Character character = FirstOf(text);
    if (!character.value || !In(kSpaces, *character.value)) return false;
    text.remove_prefix(character.length);
  }
  return true;
}

// Makes all of the text visible: invisible characters and bytes that aren't UTF-8 become "\x" and
// two hexadecimal digits per byte, "\" becomes "\\".
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

constexpr std::array<std::string_view, 4> kKeys = {
    "&score=", "&zanno=yes&symbol=", "&startdate=", "&enddate="};

std::string Limited(std::string_view text, std::size_t longest, const std::string& what) {
  if (text.size() > longest) {
    throw BadScore("the " + what + " is longer than " + std::to_string(longest) + " bytes");
  }
  if (const auto character = InvisibleCharacter(text)) {
    std::array<char, 16> number{};
    std::snprintf(number.data(), number.size(), "U+%04X", static_cast<unsigned>(*character));
    throw BadScore("the " + what + " contains an invisible character (" + number.data() + ")");
  }
  return std::string(text);
}

std::string Name(std::string_view text) {
  if (IsBlank(text)) throw BadScore("the name is blank");
  return Limited(text, kLongestName, "name");
}

// A run stores its money as a 32-bit float, so no score is larger.
double Money(std::string_view text) {
  constexpr double kMost = 1e39;
  const auto money = ExactNumber<double>(text);
  // The comparison is false for a NaN.
  if (!money || !(std::abs(*money) <= kMost)) {
    throw BadScore("the score is not a number, or out of range");
  }
  return *money;
}

std::int32_t Date(std::string_view text, const std::string& what) {
  if (const auto date = DateFromDigits(text)) return *date;
  throw BadScore("the " + what + " is not a date yyyymmdd");
}

}  // namespace

Score ParseScore(std::string_view query) {
  constexpr std::string_view kFirst = "username=";
  if (!query.starts_with(kFirst)) throw BadScore("\"username=\" is missing");
  query.remove_prefix(kFirst.size());
  std::array<std::string_view, kKeys.size()> values;
  // From the end, since only the name may contain something like a key.
  for (std::size_t i = kKeys.size(); i-- > 0;) {
    const std::size_t key = query.rfind(kKeys[i]);
    if (key == std::string_view::npos) {
      throw BadScore("\"" + std::string(kKeys[i]) + "\" is missing");
    }
    values[i] = query.substr(key + kKeys[i].size());
    query = query.substr(0, key);
  }
  return {.name = Name(query),
          .money = Money(values[0]),
          .symbol = Limited(values[1], kLongestSymbol, "symbol"),
          .start_date = Date(values[2], "start date"),
          .end_date = Date(values[3], "end date")};
}

std::string ScoreLine(std::size_t rank, const Score& score) {
  constexpr std::size_t kWidth = 2;
  std::string place = std::to_string(rank);
  place.insert(0, kWidth - std::min(kWidth, place.size()), ' ');
  return place + ".  " + MoneyText(score.money) + "  " +
         (score.name.empty() ? "anonymous" : Escaped(score.name)) + "  " + Escaped(score.symbol) +
         "  " + IsoDate(score.start_date) + " to " + IsoDate(score.end_date);
}

}  // namespace velumar
