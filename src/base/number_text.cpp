#include "base/number_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <system_error>

#include "base/decimal.h"

namespace velumar {

namespace {

template <typename Number>
std::optional<Number> Nearest(std::string_view text) {
  const std::optional<Decimal> decimal = Decimal::FromText(text);
  if (!decimal) return std::nullopt;
  const std::string canonical = decimal->Canonical();
  Number value = 0;
  const auto result = std::from_chars(canonical.data(), canonical.data() + canonical.size(), value);
  if (result.ec == std::errc::result_out_of_range) {
    // Too small a number is 0; too large a one is none.
    if (decimal->WholeDigits().empty()) return decimal->Negative() ? -Number{0} : Number{0};
    return std::nullopt;
  }
  return value;
}

// The pattern before the point, and the number of decimals after it.
struct Places {
  std::string_view whole;
  int decimals = 0;
  std::size_t fixed_decimals = 0;
};

Places Split(std::string_view pattern) {
  const std::size_t point = pattern.find('.');
  if (point == std::string_view::npos) return {pattern, 0, 0};
  const std::string_view fraction = pattern.substr(point + 1);
  return {pattern.substr(0, point), static_cast<int>(fraction.size()),
          static_cast<std::size_t>(std::count(fraction.begin(), fraction.end(), '0'))};
}

bool IsPlace(char c) { return c == '0' || c == '#'; }

// The places from the leftmost `0` to the point always show a digit.
std::size_t FixedPlaces(std::string_view whole) {
  const std::size_t zero = whole.find('0');
  if (zero == std::string_view::npos) return 0;
  return static_cast<std::size_t>(
      std::count_if(whole.begin() + static_cast<std::ptrdiff_t>(zero), whole.end(), IsPlace));
}

// Digits fill the places from the point outward, between the pattern's literals; digits beyond the
// leftmost place come first.
std::string Filled(std::string_view whole, std::string_view digits) {
  std::string reversed;
  for (auto place = whole.rbegin(); place != whole.rend(); ++place) {
    if (!IsPlace(*place)) {
      reversed += *place;
    } else if (!digits.empty()) {
      reversed += digits.back();
      digits.remove_suffix(1);
    }
  }
  std::reverse(reversed.begin(), reversed.end());
  return std::string(digits) + reversed;
}

std::string Formatted(const Decimal& number, std::string_view pattern) {
  const Places places = Split(pattern);
  const Decimal rounded = number.Rounded(places.decimals, Decimal::Tie::kAwayFromZero);
  std::string digits = rounded.WholeDigits();
  const std::size_t fixed = FixedPlaces(places.whole);
  if (digits.size() < fixed) digits.insert(0, fixed - digits.size(), '0');

  const bool grouped = places.whole.find(',') != std::string_view::npos;
  std::string text = grouped ? GroupedNumber(digits) : Filled(places.whole, digits);
  std::string fraction = rounded.FractionDigits();
  if (fraction.size() < places.fixed_decimals) fraction.resize(places.fixed_decimals, '0');
  if (!fraction.empty()) text += "." + fraction;
  const bool minus = rounded.Negative() && !rounded.IsZero();
  return minus ? "-" + text : text;
}

}  // namespace

std::optional<float> ToSingle(std::string_view text) { return Nearest<float>(text); }

std::optional<double> ToDouble(std::string_view text) { return Nearest<double>(text); }

std::optional<std::int16_t> ToInt16(std::string_view text) {
  const std::optional<Decimal> decimal = Decimal::FromText(text);
  if (!decimal) return std::nullopt;
  const Decimal whole = decimal->Rounded(0, Decimal::Tie::kToEven);
  const std::string digits = whole.WholeDigits();
  if (digits.size() > 5) return std::nullopt;
  const int size = digits.empty() ? 0 : std::stoi(digits);
  const int value = whole.Negative() ? -size : size;
  if (value < INT16_MIN || value > INT16_MAX) return std::nullopt;
  return static_cast<std::int16_t>(value);
}

std::string PlainNumberText(float value) {
  constexpr int kDigits = 7;
  if (std::isnan(value)) return "NaN";
  if (std::isinf(value)) return value < 0 ? "-Infinity" : "Infinity";
  if (value == 0) return "0";
  std::array<char, 32> buffer;
  // A double has the same value, and more digits to round.
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), double{value},
                                 std::chars_format::general, kDigits)
                       .ptr;
  std::string text(buffer.data(), end);
  std::replace(text.begin(), text.end(), 'e', 'E');
  return text;
}

std::string ReadableNumberText(float value) {
  constexpr float kSmallestPlain = 0.0001F;  // below it the plain text has an exponent
  const bool small = std::isfinite(value) && std::fabs(value) < kSmallestPlain;
  return small ? PatternText(value, "0.######") : PlainNumberText(value);
}

std::string PatternText(float value, std::string_view pattern) {
  if (!std::isfinite(value)) return PlainNumberText(value);
  return Formatted(Decimal::Shortest(value), pattern);
}

std::string PatternText(std::int32_t value, std::string_view pattern) {
  return Formatted(Decimal::FromInteger(value), pattern);
}

std::string PatternText(std::string_view text, std::string_view pattern) {
  const std::optional<Decimal> decimal = Decimal::FromText(text);
  return decimal ? Formatted(*decimal, pattern) : std::string(text);
}

std::string GroupedNumber(std::string number) {
  const std::size_t first_digit = number.starts_with('-') ? 1 : 0;
  for (std::size_t at = std::min(number.find('.'), number.size()); at > first_digit + 3;) {
    at -= 3;
    number.insert(at, 1, ',');
  }
  return number;
}

}  // namespace velumar
