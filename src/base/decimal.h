#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace velumar {

// An exact decimal number: 0.d1d2d3… times 10 to the power `point`, with a sign. Rounding of money
// and prices works on decimals, since a trader sees decimals.
class Decimal {
 public:
  enum class Tie : std::uint8_t { kAwayFromZero, kToEven };

  // Reads a text such as "-1,234.5e2"; blanks around it are ignored. Returns nothing if it is not a
  // number. Commas may only separate groups of three digits: "1,5" could mean 1.5 or 15, and
  // "0,500" a half, so neither is a number.
  static std::optional<Decimal> FromText(std::string_view text);
  // The fewest significant digits that read back as the same 32-bit float, which must be finite.
  static Decimal Shortest(float value);
  static Decimal FromInteger(std::int64_t value);

  bool Negative() const { return negative_; }
  bool IsZero() const { return digits_.empty(); }
  bool IsWhole() const { return point_ >= static_cast<int>(digits_.size()); }
  // The exact difference.
  Decimal Minus(const Decimal& other) const;
  // The number rounded to `places` decimals.
  Decimal Rounded(int places, Tie tie) const;
  // The digits before the point, without leading zeros, and after it, without trailing ones.
  std::string WholeDigits() const;
  std::string FractionDigits() const;
  // Sign, digits, point and exponent, as std::from_chars reads them.
  std::string Canonical() const;

 private:
  Decimal(bool negative, std::string digits, int point);
  void Normalise();

  bool negative_ = false;
  std::string digits_;  // no zeros at either end; empty for zero
  int point_ = 0;
};

// The float as a trader reads it: 100.3, not 100.30000305.
double ReadableDouble(float number);

// a less b, both as the fewest digits that read back as them: 100.3 less 100.1 is 0.2, which it
// isn't in binary.
double DecimalDifference(double a, double b);

}  // namespace velumar
