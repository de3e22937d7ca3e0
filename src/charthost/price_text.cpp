#include "charthost/price_text.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>

namespace velumar {
namespace {

using Digits = std::array<char, 400>;  // room for every double in fixed form

std::string Fixed(double value, int decimals) {
  Digits digits;
  const auto end =
      std::to_chars(digits.begin(), digits.end(), value, std::chars_format::fixed, decimals).ptr;
  std::string text(digits.begin(), end);
  if (text.find_first_not_of("-0.") == std::string::npos && text.starts_with('-')) text.erase(0, 1);
  return text;
}

std::string Grouped(std::string text) {
  auto point = text.find('.');
  if (point == std::string::npos) point = text.size();
  const std::size_t first_digit = text.starts_with('-') ? 1 : 0;
  for (std::size_t at = point; at > first_digit + 3;) {
    at -= 3;
    text.insert(at, 1, ',');
  }
  return text;
}

std::string Signed(double value, int decimals) {
  std::string text = Fixed(value, decimals);
  if (value > 0) text.insert(0, 1, '+');
  return text;
}

}  // namespace

int DecimalsOf(float value) {
  Digits digits;
  const auto end = std::to_chars(digits.begin(), digits.end(), value, std::chars_format::fixed).ptr;
  for (auto at = digits.begin(); at != end; ++at) {
    if (*at == '.') return static_cast<int>(end - at) - 1;
  }
  return 0;
}

std::string PriceText(double value, int decimals) { return Fixed(value, decimals); }

std::string VolumeText(double value) {
  const bool whole = value == std::floor(value) || std::abs(value) >= 1e6;
  return Grouped(Fixed(value, whole ? 0 : 3));
}

std::string ShortVolumeText(double value) {
  struct Unit {
    double size;
    const char* letter;
  };
  static constexpr std::array kUnits = {Unit{1e12, "T"}, Unit{1e9, "B"}, Unit{1e6, "M"},
                                        Unit{1e3, "K"}};
  for (const Unit& unit : kUnits) {
    if (std::abs(value) < unit.size * 0.9995) continue;
    const double count = value / unit.size;
    const bool tenths = count < 9.95 && std::round(count * 10) != std::round(count) * 10;
    return Fixed(count, tenths ? 1 : 0) + unit.letter;
  }
  const bool whole = value == std::floor(value) || value >= 10;
  return Fixed(value, whole ? 0 : 2);
}

std::string ChangeText(double close, double previous_close, int decimals) {
  const double change = close - previous_close;
  std::string text = Signed(change, decimals);
  if (previous_close == 0) return text;
  return text + " (" + Signed(change / std::abs(previous_close) * 100, 2) + "%)";
}

}  // namespace velumar
