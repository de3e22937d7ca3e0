#include "import/price_number.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <vector>

#include "base/number_text.h"
#include "base/text.h"
#include "import/field_text.h"
#include "import/price_reader.h"
#include "marketdata/number_format.h"

namespace velumar {

namespace {

constexpr std::array<double, 23> kPowersOfTen = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                 1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                                 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

constexpr std::array<float, 11> kExactFloats = {1e0F, 1e1F, 1e2F, 1e3F, 1e4F, 1e5F,
                                                1e6F, 1e7F, 1e8F, 1e9F, 1e10F};

// Appends the decimal digits from `at` on to a number and returns where they end.
const char* TakeDigits(const char* at, const char* end, std::uint64_t& number) {
  for (; at != end && IsDigit(*at); ++at) number = number * 10 + static_cast<unsigned>(*at - '0');
  return at;
}

// A number that ends before the eighth byte, decimal sign included.
struct ShortNumber {
  std::uint64_t digits = 0;
  unsigned length = 0;  // in bytes; 0 if there is none
  unsigned decimals = 0;
};

// Takes all digits at once: eight characters are one integer, whose lowest byte is the first.
ShortNumber TakeShortNumber(const char* at, const char* end, char decimal) {
  if constexpr (std::endian::native != std::endian::little) return {};
  constexpr unsigned kBytes = sizeof(std::uint64_t);
  constexpr std::uint64_t kEach = 0x0101010101010101;
  if (end - at < static_cast<std::ptrdiff_t>(kBytes)) return {};
  std::uint64_t bytes = 0;
  std::memcpy(&bytes, at, kBytes);
  bytes ^= kEach * '0';  // digits become 0 to 9
  // The highest bit of each other byte, up to the first one: a carry spoils only later bytes.
  constexpr std::uint64_t kAboveNine = 0x7F - 9;
  constexpr std::uint64_t kHighBit = 0x80;
  const std::uint64_t others = ((bytes + kEach * kAboveNine) | bytes) & (kEach * kHighBit);
  if (others == 0) return {};
  ShortNumber number{.length = static_cast<unsigned>(std::countr_zero(others)) / 8};
  unsigned count = number.length;
  if (at[count] == decimal) {
    // Closes the gap of the decimal sign; the byte that follows the word is not looked at.
    const std::uint64_t whole = (std::uint64_t{1} << (count * 8)) - 1;
    const std::uint64_t rest = others >> 8 & ~whole;
    if (rest == 0) return {};
    bytes = (bytes & whole) | (bytes >> 8 & ~whole);
    const unsigned all = static_cast<unsigned>(std::countr_zero(rest)) / 8;
    number.decimals = all - count;
    number.length = all + 1;
    count = all;
  }
  if (count == 0) return {};
  bytes <<= (kBytes - count) * 8;  // leading zeros
  // Pairs of digits, pairs of pairs, and their sum.
  bytes = bytes * 10 + (bytes >> 8);
  constexpr std::uint64_t kPairs = 0x000000FF000000FF;
  constexpr std::uint64_t kFirstAndThird = 100 + (std::uint64_t{1'000'000} << 32);
  constexpr std::uint64_t kSecondAndFourth = 1 + (std::uint64_t{10'000} << 32);
  number.digits =
      ((bytes & kPairs) * kFirstAndThird + (bytes >> 16 & kPairs) * kSecondAndFourth) >> 32;
  return number;
}

// The float nearest to digits * 10^exponent, if a double decides it: with an exact whole number and
// an exact power of ten the quotient or product is the nearest double. Only a double in the exact
// middle of two floats could have been rounded to there.
std::optional<float> NearestFloat(std::uint64_t digits, int exponent) {
  if (digits >= 1ULL << 53 || exponent > 22 || exponent < -22) return std::nullopt;
  // Digits and power of ten are exact floats, so their quotient is the nearest one.
  if (digits < 1ULL << 24 && exponent <= 0 && exponent > -static_cast<int>(kExactFloats.size())) {
    const auto whole = static_cast<float>(static_cast<std::int32_t>(digits));
    return exponent == 0 ? whole : whole / kExactFloats[static_cast<std::size_t>(-exponent)];
  }
  const auto whole = static_cast<double>(static_cast<std::int64_t>(digits));
  const double value = exponent < 0 ? whole / kPowersOfTen[static_cast<std::size_t>(-exponent)]
                                    : whole * kPowersOfTen[static_cast<std::size_t>(exponent)];
  constexpr double kSmallest = 1e-37;
  constexpr double kLargest = 1e38;
  if (value < kSmallest || value > kLargest) return std::nullopt;
  constexpr std::uint64_t kBelowFloat = (1ULL << 29) - 1;
  constexpr std::uint64_t kMiddle = 1ULL << 28;
  if ((std::bit_cast<std::uint64_t>(value) & kBelowFloat) == kMiddle) return std::nullopt;
  return static_cast<float>(value);
}

enum class Outcome : std::uint8_t { kNumber, kNoNumber, kNotStorable };

bool TakeStart(std::string_view& text, std::string_view start) {
  if (!text.starts_with(start)) return false;
  text = Stripped(text.substr(start.size()));
  return true;
}

bool TakeEnd(std::string_view& text, std::string_view end) {
  if (!text.ends_with(end)) return false;
  text = Stripped(text.substr(0, text.size() - end.size()));
  return true;
}

// Drops currency signs and a percent sign.
void TakeUnits(std::string_view& text) {
  for (const std::string_view sign : {"$", "€", "£", "¥", "USD", "EUR", "GBP"}) {
    if (TakeStart(text, sign) || TakeEnd(text, sign)) break;
  }
  TakeEnd(text, "%");
}

// The power of ten that a unit at the end means.
int TakeMagnitude(std::string_view& text) {
  static constexpr std::pair<std::string_view, int> kUnits[] = {
      {"K", 3},   {"M", 6},  {"B", 9},   {"T", 12},  {"TSD", 3}, {"MIO", 6},
      {"MLN", 6}, {"MN", 6}, {"MRD", 9}, {"MLD", 9}, {"BN", 9},  {"L", 5},
      {"LAC", 5}, {"CR", 7}, {"万", 4},  {"亿", 8},  {"萬", 4},  {"億", 8}};
  std::string_view number = text;
  TakeEnd(number, ".");
  const std::size_t digits = number.find_last_of(kDigits);
  if (digits == std::string_view::npos || digits + 1 == number.size()) return 0;
  const std::string unit = UpperCased(Stripped(number.substr(digits + 1)));
  const auto* const known =
      std::ranges::find(kUnits, unit, &std::pair<std::string_view, int>::first);
  if (known == std::end(kUnits)) return 0;
  text = number.substr(0, digits + 1);
  return known->second;
}

// The length of a sign between groups of three digits, 0 if there is none: the point of a file with
// decimal commas or the comma of one with points, a blank of any width, an apostrophe.
std::size_t GroupSignLength(std::string_view text, NumberStyle style) {
  for (const std::string_view sign : {" ", "'", "\u00A0", "\u2009", "\u202F", "\u2019"}) {
    if (text.starts_with(sign)) return sign.size();
  }
  return text.starts_with(style.decimal_comma ? '.' : ',') ? 1 : 0;
}

// The digits before the decimal sign, without the signs between groups. Groups have three digits;
// in India those before the last one have two.
bool TakeWhole(std::string_view& text, NumberStyle style, std::string& plain) {
  std::vector<std::size_t> groups(1);
  std::string_view sign;
  while (!text.empty()) {
    if (IsDigit(text.front())) {
      plain += text.front();
      ++groups.back();
      text.remove_prefix(1);
      continue;
    }
    const std::size_t length = GroupSignLength(text, style);
    if (length == 0) break;
    if (!sign.empty() && text.substr(0, length) != sign) return false;
    sign = text.substr(0, length);
    groups.push_back(0);
    text.remove_prefix(length);
  }
  if (groups.size() == 1) return true;
  const std::size_t inner = groups.size() > 2 ? groups[1] : 3;
  const bool even = std::all_of(groups.begin() + 1, groups.end() - 1,
                                [&](std::size_t size) { return size == inner; });
  return even && (inner == 3 || inner == 2) && groups.front() > 0 && groups.front() <= inner &&
         groups.back() == 3;
}

std::optional<float> Scaled(const std::string& digits, int exponent) {
  return ExactNumber<float>(digits + 'e' + std::to_string(exponent));
}

// A number with a sign, groups, an exponent or many digits.
Outcome ReadAny(std::string_view text, NumberStyle style, int shift, PriceNumber& number) {
  std::string plain;
  if (text.starts_with('-')) plain = "-";
  if (text.starts_with('-') || text.starts_with('+')) text.remove_prefix(1);
  TakeUnits(text);
  const int magnitude = TakeMagnitude(text);
  int exponent = shift + magnitude;
  if (!TakeWhole(text, style, plain)) return Outcome::kNoNumber;
  int decimals = 0;
  if (text.starts_with(style.decimal_comma ? ',' : '.')) {
    text.remove_prefix(1);
    plain += '.';
    for (; !text.empty() && IsDigit(text.front()); text.remove_prefix(1), ++decimals) {
      plain += text.front();
    }
  }
  if (plain.find_first_of(kDigits) == std::string::npos) return Outcome::kNoNumber;
  if (text.starts_with('e') || text.starts_with('E')) {
    text.remove_prefix(1);
    if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
    const auto own = ExactNumber<std::int16_t>(text);
    if (!own) return Outcome::kNoNumber;
    exponent += *own;
    text = {};
  }
  if (!text.empty()) return Outcome::kNoNumber;
  const bool zero = plain.find_first_of("123456789") == std::string::npos;
  const std::optional<float> value = zero ? 0.0F : Scaled(plain, exponent);
  const auto stored = value ? MbfFromFloat(*value) : std::nullopt;
  if (!stored || FloatFromMbf(*stored) != *value || (*value == 0 && !zero)) {
    return Outcome::kNotStorable;
  }
  number = {*value, std::max(decimals - exponent, 0), magnitude};
  return Outcome::kNumber;
}

Outcome Read(std::string_view field, NumberStyle style, int shift, PriceNumber& number) {
  const char decimal = style.decimal_comma ? ',' : '.';
  const char* const end = field.data() + field.size();
  if (TakePlainNumber(field.data(), end, decimal, shift, number) == end) return Outcome::kNumber;
  return ReadAny(field, style, shift, number);
}

}  // namespace

const char* TakePlainNumber(const char* at, const char* end, char decimal, int shift,
                            PriceNumber& number) {
  constexpr std::ptrdiff_t kMostDigits = 19;
  const ShortNumber brief = TakeShortNumber(at, end, decimal);
  std::uint64_t digits = brief.digits;
  const char* next = at + brief.length;
  auto decimals = static_cast<int>(brief.decimals);
  if (brief.length == 0) {
    next = TakeDigits(at, end, digits);
    std::ptrdiff_t count = next - at;
    if (next != end && *next == decimal) {
      const char* const first = next + 1;
      next = TakeDigits(first, end, digits);
      decimals = static_cast<int>(next - first);
      count += decimals;
    }
    if (count == 0 || count > kMostDigits) return nullptr;
  }
  const auto value = NearestFloat(digits, shift - decimals);
  if (!value) return nullptr;
  number.value = *value;
  number.decimals = std::max(decimals - shift, 0);
  return next;
}

std::optional<PriceNumber> NumberIn(std::string_view field, NumberStyle style) {
  PriceNumber number;
  if (Read(field, style, 0, number) != Outcome::kNumber) return std::nullopt;
  return number;
}

PriceNumber ReadNumber(std::string_view field, NumberStyle style, int shift) {
  PriceNumber number;
  switch (Read(field, style, shift, number)) {
    case Outcome::kNumber:
      return number;
    case Outcome::kNoNumber:
      if (field.empty()) throw ImportError("is empty");
      throw ImportError("\"" + std::string(field) + "\" is not a number");
    case Outcome::kNotStorable:
      break;
  }
  throw ImportError("\"" + std::string(field) +
                    "\" can't be stored; numbers are 0 or between 1.2E-38 and 1.7E+38");
}

bool IsMissingWord(std::string_view field) {
  constexpr std::size_t kLongest = 5;
  if (field.size() > kLongest) return false;
  static constexpr std::string_view kMissing[] = {"-",    "--",     "NULL",   "N/A",  "NA",
                                                  "NAN",  "#N/A",   ".",      "NONE", "NIL",
                                                  "N.A.", "\u2013", "\u2014", "?"};
  return std::ranges::find(kMissing, UpperCased(field)) != std::end(kMissing);
}

int DecimalsOf(float value) {
  std::array<char, 64> text;
  const char* const end =
      std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed).ptr;
  const char* const point = std::find(static_cast<const char*>(text.data()), end, '.');
  return point == end ? 0 : static_cast<int>(end - point - 1);
}

}  // namespace velumar
