#include "import/number_style.h"

#include <algorithm>
#include <string_view>

#include "import/field_text.h"
#include "import/moment_text.h"

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

// How usual decimal commas are where the dates are written like this.
enum class Commas : std::uint8_t { kUnusual, kPossible, kUsual };

Commas CommasNextTo(std::string_view date) {
  const auto orderless = ReadOrderlessDate(date.substr(0, date.find(' ')));
  if (!orderless) return Commas::kUnusual;
  return orderless->has_points ? Commas::kUsual : Commas::kPossible;
}

// True if a number of a thousand or more has no sign between its digits: the program that wrote the
// file does not group them.
bool WritesPlainThousands(const SampleTable& sample, std::span<const std::size_t> columns) {
  return std::ranges::any_of(columns, [&](std::size_t column) {
    return std::ranges::any_of(sample.Column(column), [](std::string_view field) {
      return field.size() > 3 && field.front() != '0' && std::ranges::all_of(field, IsDigit);
    });
  });
}

}  // namespace

std::optional<NumberStyle> StyleOfNumbers(const SampleTable& sample, std::size_t date,
                                          std::span<const std::size_t> columns) {
  const Evidence evidence = Collect(sample, columns);
  if (evidence.comma && evidence.point) {
    throw ImportError("some numbers have a decimal comma and some a decimal point");
  }
  if (evidence.comma || evidence.point) return NumberStyle{evidence.comma};
  if (!evidence.perhaps_comma && !evidence.perhaps_point) return NumberStyle{};
  if (evidence.perhaps_comma && evidence.perhaps_point) return std::nullopt;
  const bool commas_separate = sample.separator == ',';
  if (commas_separate && !sample.has_quotes) return NumberStyle{};
  const auto dates = sample.Column(date);
  const Commas commas = CommasNextTo(dates.empty() ? std::string_view() : dates.front());
  // Prices are the first columns; volumes may jump.
  const auto prices = columns.first(std::min<std::size_t>(columns.size(), 4));
  const Evidence of_prices = Collect(sample, prices);
  if (!of_prices.perhaps_comma && !of_prices.perhaps_point) {
    // Whole prices next to volumes in groups.
    const bool groups_have_commas = evidence.perhaps_comma;
    const bool usual = groups_have_commas ? commas_separate || commas == Commas::kUnusual
                                          : commas == Commas::kUsual;
    return usual ? std::optional(NumberStyle{!groups_have_commas}) : std::nullopt;
  }
  const bool jumps_with_comma = Jumps(sample, prices, {true});
  const bool jumps_with_point = Jumps(sample, prices, {false});
  if (jumps_with_comma != jumps_with_point) return NumberStyle{jumps_with_point};
  const bool has_no_groups = WritesPlainThousands(sample, columns.subspan(prices.size()));
  const bool usual =
      evidence.perhaps_comma
          ? commas == Commas::kUsual || (has_no_groups && !commas_separate)
          : commas == Commas::kUnusual || (has_no_groups && commas == Commas::kPossible);
  return usual ? std::optional(NumberStyle{evidence.perhaps_comma}) : std::nullopt;
}

}  // namespace velumar
