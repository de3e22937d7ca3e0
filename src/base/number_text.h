#pragma once

#include <array>
#include <charconv>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

namespace velumar {

// Text to number. All accept thousands grouping ("2,000,000") and return nothing for a text that is
// not a number, for commas that do not group thousands ("1,5"), and for a number out of range.
std::optional<float> ToSingle(std::string_view text);
std::optional<double> ToDouble(std::string_view text);
// Rounds to the nearest whole number, halves to even.
std::optional<std::int16_t> ToInt16(std::string_view text);

// The number that all of the text is, as std::from_chars reads it: without blanks, grouping or a
// "+". Returns nothing for any other text and for a number out of range.
template <typename Number>
std::optional<Number> ExactNumber(std::string_view text) {
  Number number{};
  const char* const end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || rest != end) return std::nullopt;
  return number;
}

// The shortest text that ExactNumber reads as the same number.
template <typename Number>
std::string ExactText(Number number) {
  std::array<char, 32> text{};
  return {text.data(), std::to_chars(text.data(), text.data() + text.size(), number).ptr};
}

// At most seven significant digits, no grouping, an exponent from 1E+07 and below 0.0001: "100.5",
// "1E+07", "1.234568E+08", "5E-05". Halves at the eighth digit round to even.
std::string PlainNumberText(float value);

// The same for people: a small number has up to six decimals instead of an exponent ("0.00005"), so
// the rounding error of a holding or a sum reads "0", not "1.490116E-09".
std::string ReadableNumberText(float value);

// A number in a format pattern: `#` is a digit place that is empty if there is no digit, `0` one
// that always shows a digit, `,` thousands grouping, `.` the decimal point, `:` itself. Rounds at
// the last decimal place, halves away from zero, and never shows a negative zero. A float counts as
// the shortest decimal that reads back as the same float, as a trader would write it.
std::string PatternText(float value, std::string_view pattern);
std::string PatternText(std::int32_t value, std::string_view pattern);
// Returns a text that is not a number unchanged.
std::string PatternText(std::string_view text, std::string_view pattern);

// Groups the thousands of a plain number: "-1234567.25" becomes "-1,234,567.25".
std::string GroupedNumber(std::string number);

inline constexpr std::string_view kWholePattern = "###,###,##0";
inline constexpr std::string_view kTwoDecimalsPattern = "###,###,##0.0#";
inline constexpr std::string_view kQuantityPattern = "###,###,##0.#########";
inline constexpr std::string_view kClosePattern = "########0.0#";
inline constexpr std::string_view kPricePattern = "###,##0.00";
inline constexpr std::string_view kTimePattern = "0#:##:##";

}  // namespace velumar
