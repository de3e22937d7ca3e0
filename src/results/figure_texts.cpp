#include "results/figure_texts.h"

#include <array>
#include <charconv>

#include "base/number_text.h"

namespace velumar {

std::string DecimalText(double number) {
  constexpr std::size_t kLongest = 400;
  std::array<char, kLongest> digits{};
  const auto end =
      std::to_chars(digits.data(), digits.data() + digits.size(), number, std::chars_format::fixed);
  return {digits.data(), end.ptr};
}

std::string MoneyText(std::optional<double> money) {
  return money ? PatternText(DecimalText(*money), "###,###,###,###,##0.00") : kNoFigure;
}

std::string PriceText(std::optional<double> price) {
  return price ? PatternText(DecimalText(*price), "###,###,###,##0.00######") : kNoFigure;
}

std::string PercentText(std::optional<double> share) {
  constexpr double kPercent = 100;
  return share ? MoneyText(*share * kPercent) + " %" : kNoFigure;
}

std::string QuantityText(double quantity) {
  return PatternText(DecimalText(quantity), "########0.##");
}

std::string CsvLine(std::span<const std::string> fields) {
  std::string line;
  for (const std::string& field : fields) {
    if (&field != fields.data()) line += ',';
    if (field.find_first_of(",\"\r\n") == std::string::npos) {
      line += field;
      continue;
    }
    line += '"';
    for (const char c : field) line += c == '"' ? std::string("\"\"") : std::string(1, c);
    line += '"';
  }
  return line + '\n';
}

}  // namespace velumar
