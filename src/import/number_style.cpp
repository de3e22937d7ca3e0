#include "import/number_style.h"

#include <algorithm>
#include <string_view>

namespace velumar {

namespace {

// What a number says about the decimal sign. "1.234" may be one with three decimals, or a thousand
// and more; "0.234" and "1234.5" may not.
enum class Sign : std::uint8_t { kNone, kComma, kPoint, kPerhapsComma, kPerhapsPoint };

Sign SignIn(std::string_view field) {
  const std::size_t comma = field.rfind(',');
  const std::size_t point = field.rfind('.');
  if (comma == std::string_view::npos && point == std::string_view::npos) return Sign::kNone;
  if (comma != std::string_view::npos && point != std::string_view::npos) {
    return comma > point ? Sign::kComma : Sign::kPoint;
  }
  const bool is_comma = comma != std::string_view::npos;
  const std::size_t at = is_comma ? comma : point;
  if (std::ranges::count(field, field[at]) > 1) return is_comma ? Sign::kPoint : Sign::kComma;
  constexpr std::string_view kDigits = "0123456789";
  const std::size_t start = field.find_first_of(kDigits);
  const std::size_t end = std::min(field.find_first_not_of(kDigits, at + 1), field.size());
  const bool grouped = start < at && at - start <= 3 && field[start] != '0' && end - at == 4;
  if (grouped) return is_comma ? Sign::kPerhapsComma : Sign::kPerhapsPoint;
  return is_comma ? Sign::kComma : Sign::kPoint;
}

struct Evidence {
  bool comma = false;
  bool point = false;
  bool perhaps_comma = false;
  bool perhaps_point = false;
};

Evidence Collect(const SampleTable& sample, std::span<const std::size_t> columns) {
  Evidence evidence;
  for (const std::size_t column : columns) {
    for (const std::string_view field : sample.Column(column)) {
      if (!LooksLikeNumber(field)) continue;
      const Sign sign = SignIn(field);
      evidence.comma |= sign == Sign::kComma;
      evidence.point |= sign == Sign::kPoint;
      evidence.perhaps_comma |= sign == Sign::kPerhapsComma;
      evidence.perhaps_point |= sign == Sign::kPerhapsPoint;
    }
  }
  return evidence;
}

// True if the numbers of a column, in this style, are a thousand times larger in some rows than in
// others: the style reads some of them wrongly.
bool Jumps(const SampleTable& sample, std::span<const std::size_t> columns, NumberStyle style) {
  constexpr float kJump = 100;
  for (const std::size_t column : columns) {
    float before = 0;
    for (const std::string_view field : sample.Column(column)) {
      const float value = NumberIn(field, style).value_or(PriceNumber{}).value;
      if (before > 0 && value > 0 && (value > before * kJump || before > value * kJump)) {
        return true;
      }
      before = value;
    }
  }
  return false;
}

// Days before months next to semicolons, or so it seems: where decimal commas are usual.
bool LooksContinental(const SampleTable& sample) {
  const std::string_view date = sample.lines[sample.first_row].front();
  const std::size_t sign = date.find_first_of("./-");
  return sample.separator == ';' && (sign == 1 || sign == 2);
}

}  // namespace

std::optional<NumberStyle> StyleOfNumbers(const SampleTable& sample,
                                          std::span<const std::size_t> columns) {
  const Evidence evidence = Collect(sample, columns);
  if (evidence.comma && evidence.point) {
    throw ImportError("some numbers have a decimal comma and some a decimal point");
  }
  if (evidence.comma || evidence.point) return NumberStyle{evidence.comma};
  if (!evidence.perhaps_comma && !evidence.perhaps_point) return NumberStyle{};
  if (evidence.perhaps_comma && evidence.perhaps_point) return std::nullopt;
  const bool continental = LooksContinental(sample);
  // Prices are the first columns; volumes may jump.
  const auto prices = columns.first(std::min<std::size_t>(columns.size(), 4));
  const Evidence of_prices = Collect(sample, prices);
  if (!of_prices.perhaps_comma && !of_prices.perhaps_point) {
    // Whole prices next to volumes in groups.
    if (evidence.perhaps_comma == continental) return std::nullopt;
    return NumberStyle{continental};
  }
  const bool jumps_with_comma = Jumps(sample, prices, {true});
  const bool jumps_with_point = Jumps(sample, prices, {false});
  if (jumps_with_comma != jumps_with_point) return NumberStyle{jumps_with_point};
  if (evidence.perhaps_comma != continental) return std::nullopt;
  return NumberStyle{continental};
}

}  // namespace velumar
