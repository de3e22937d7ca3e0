#include "import/number_style.h"

#include <algorithm>
#include <string_view>

namespace velumar {

namespace {

// What a number says about the decimal sign.
enum class Sign : std::uint8_t { kNone, kComma, kPoint, kCommaOrThousands, kPointOrThousands };

// "1.234" may be one with three decimals or a thousand and more; "0.234" and "1234.5" can't.
Sign SignIn(std::string_view field) {
  const std::size_t comma = field.rfind(',');
  const std::size_t point = field.rfind('.');
  if (comma == std::string_view::npos && point == std::string_view::npos) return Sign::kNone;
  if (comma != std::string_view::npos && point != std::string_view::npos) {
    return comma > point ? Sign::kComma : Sign::kPoint;
  }
  const bool is_comma = comma != std::string_view::npos;
  const char sign = is_comma ? ',' : '.';
  if (std::ranges::count(field, sign) > 1) return is_comma ? Sign::kPoint : Sign::kComma;
  const std::size_t at = is_comma ? comma : point;
  const std::string_view digits = "0123456789";
  const std::size_t start = field.find_first_of(digits);
  const std::size_t end = std::min(field.find_first_not_of(digits, at + 1), field.size());
  const bool grouped = start < at && at - start <= 3 && field[start] != '0' && end - at == 4;
  if (grouped) return is_comma ? Sign::kCommaOrThousands : Sign::kPointOrThousands;
  return is_comma ? Sign::kComma : Sign::kPoint;
}

}  // namespace

NumberStyle StyleOfNumbers(const SampleTable& sample, std::span<const std::size_t> columns) {
  bool comma = false;
  bool point = false;
  bool perhaps_comma = false;
  bool perhaps_point = false;
  for (const std::size_t column : columns) {
    for (const std::string_view field : sample.Column(column)) {
      const Sign sign = SignIn(field);
      comma |= sign == Sign::kComma;
      point |= sign == Sign::kPoint;
      perhaps_comma |= sign == Sign::kCommaOrThousands;
      perhaps_point |= sign == Sign::kPointOrThousands;
    }
  }
  if (comma && point) {
    throw ImportError("some numbers have a decimal comma and some a decimal point");
  }
  // Without a sure sign, a point is a decimal point, and a comma next to it groups thousands.
  return {comma || (!point && perhaps_comma && !perhaps_point && sample.separator != ',')};
}

}  // namespace velumar
