#include "scored/score.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "base/dates.h"
#include "results/figure_texts.h"

namespace velumar {

namespace {

constexpr std::array<std::string_view, 4> kBetween = {
    "&score=", "&zanno=yes&symbol=", "&startdate=", "&enddate="};

std::string Limited(std::string_view text, std::size_t longest, const std::string& what) {
  if (text.size() > longest) {
    throw BadScore("the " + what + " is longer than " + std::to_string(longest) + " bytes");
  }
  return std::string(text);
}

// Up to ten digits before the point: no run comes to more.
double Money(std::string_view text) {
  constexpr double kMost = 1e10;
  double money = 0;
  const auto end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, money);
  if (error != std::errc() || rest != end || !std::isfinite(money) || std::abs(money) >= kMost) {
    throw BadScore("the score is no number");
  }
  return money;
}

std::int32_t Date(std::string_view text, const std::string& what) {
  constexpr std::size_t kDigits = 8;
  std::int32_t date = 0;
  const auto end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, date);
  if (text.size() != kDigits || error != std::errc() || rest != end || !IsRealDate(date)) {
    throw BadScore("the " + what + " is no date yyyymmdd");
  }
  return date;
}

// How many bytes the character at the front has; 0 where there is none.
std::size_t CharacterLength(std::string_view text) {
  const auto at = [text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned char first = at(0);
  const std::size_t length = first < 0x80   ? 1
                             : first < 0xC2 ? 0
                             : first < 0xE0 ? 2
                             : first < 0xF0 ? 3
                             : first < 0xF5 ? 4
                                            : 0;
  if (length == 0 || length > text.size()) return 0;
  for (std::size_t i = 1; i < length; ++i) {
    if ((at(i) & 0xC0U) != 0x80) return 0;
  }
  if (first == 0xE0 && at(1) < 0xA0) return 0;
  if (first == 0xED && at(1) > 0x9F) return 0;
  if (first == 0xF0 && at(1) < 0x90) return 0;
  if (first == 0xF4 && at(1) > 0x8F) return 0;
  return length;
}

bool Shown(std::string_view character) {
  if (character.size() == 1) return character[0] >= ' ' && character[0] != '\x7F';
  if (character.size() == 2) return character > "\xC2\x9F";
  // Ends of lines and paragraphs, marks of direction, the mark of a byte order.
  const bool turns = (character >= "\xE2\x80\x8B" && character <= "\xE2\x80\x8F") ||
                     (character >= "\xE2\x80\xA8" && character <= "\xE2\x80\xAE") ||
                     (character >= "\xE2\x81\xA0" && character <= "\xE2\x81\xAF");
  return !turns && character != "\xEF\xBB\xBF";
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

std::string IsoDate(std::int32_t date) { return DateText(date, "yyyy-MM-dd"); }

}  // namespace

Score ParseScore(std::string_view query) {
  constexpr std::string_view kFirst = "username=";
  if (!query.starts_with(kFirst)) throw BadScore("there is no username");
  query.remove_prefix(kFirst.size());
  std::array<std::string_view, kBetween.size()> values;
  // From the end, where the values can hold no keys: what is left over is the name.
  for (std::size_t i = kBetween.size(); i-- > 0;) {
    const std::size_t key = query.rfind(kBetween[i]);
    if (key == std::string_view::npos) {
      throw BadScore("there is no \"" + std::string(kBetween[i]) + "\"");
    }
    values[i] = query.substr(key + kBetween[i].size());
    query = query.substr(0, key);
  }
  return {.name = Limited(query, kLongestName, "name"),
          .money = Money(values[0]),
          .symbol = Limited(values[1], kLongestSymbol, "symbol"),
          .start_date = Date(values[2], "start date"),
          .end_date = Date(values[3], "end date")};
}

std::string Escaped(std::string_view text) {
  std::string out;
  while (!text.empty()) {
    const std::size_t length = CharacterLength(text);
    const std::string_view character = text.substr(0, std::max<std::size_t>(length, 1));
    if (length == 0 || !Shown(character)) {
      AppendEscaped(out, character);
    } else {
      out += character == "\\" ? "\\\\" : character;
    }
    text.remove_prefix(character.size());
  }
  return out;
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
