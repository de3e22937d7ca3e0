#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace velumar {

// Texts to numbers. All accept thousands grouping ("2,000,000") and give nothing for a text that
// holds no number, commas that don't group thousands ("1,5"), or a number out of range.
std::optional<float> ToSingle(std::string_view text);
std::optional<double> ToDouble(std::string_view text);
// Rounds to the nearest whole number, a half to the even one.
std::optional<std::int16_t> ToInt16(std::string_view text);

// At most seven significant digits, no grouping, an exponent from 1E+07 upward and below 0.0001:
// "100.5", "1E+07", "1.234568E+08", "5E-05". A tie at the eighth digit goes to the even one.
std::string PlainNumberText(float value);

// The same for people to read: a small number has no exponent but up to six decimals ("0.00005"),
// so what rounding has left of a holding or a sum reads "0", not "1.490116E-09".
std::string ReadableNumberText(float value);

// Numbers through a format pattern: `#` is a digit place that stays empty when there is no digit,
// `0` one that always shows a digit, `,` thousands grouping, `.` the decimal point, `:` itself.
// Rounds at the last decimal place, a half away from zero, and never shows a minus zero. A float
// counts as the shortest decimal that reads back as it, as a trader would write it.
std::string PatternText(float value, std::string_view pattern);
std::string PatternText(std::int32_t value, std::string_view pattern);
// A text that holds no number passes unchanged.
std::string PatternText(std::string_view text, std::string_view pattern);

// Thousands grouping of a number's plain digits: "-1234567.25" becomes "-1,234,567.25".
std::string GroupedNumber(std::string number);

inline constexpr std::string_view kWholePattern = "###,###,##0";
inline constexpr std::string_view kTwoDecimalsPattern = "###,###,##0.0#";
inline constexpr std::string_view kQuantityPattern = "###,###,##0.#########";
inline constexpr std::string_view kClosePattern = "########0.0#";
inline constexpr std::string_view kPricePattern = "###,##0.00";
inline constexpr std::string_view kTimePattern = "0#:##:##";

}  // namespace velumar
