#pragma once

#include <optional>
#include <string_view>

#include "import/field_text.h"

namespace velumar {

// How a file writes its numbers. Thousands may be grouped by the other of comma and point, by
// blanks or by apostrophes.
struct NumberStyle {
  bool decimal_comma = false;
};

struct PriceNumber {
  float value = 0;
  int decimals = 0;   // of the text after scaling, perhaps more than the float needs
  int magnitude = 0;  // the power of ten of a unit at the end: 3 for K
};

// The nearest 32-bit float of a decimal number times 10 to the power `shift`. Currency signs, a
// percent sign at the end and thousands groups are dropped; K, M, B and T at the end count as
// thousands to trillions, other units as they do in their countries. Throws ImportError, quoting
// the field, if it is not a number or cannot be stored in market data.
PriceNumber ReadNumber(std::string_view field, NumberStyle style, int shift);

// The same without a shift; nothing instead of an error.
std::optional<PriceNumber> NumberIn(std::string_view field, NumberStyle style);

// Takes a number of nothing but digits and at most one decimal sign from `at` on, as ReadNumber
// does. Returns where it ends; null if there is none or the fast way does not do.
const char* TakePlainNumber(const char* at, const char* end, char decimal, int shift,
                            PriceNumber& number);

bool IsMissingWord(std::string_view field);
// True for a missing value: nothing, "null", "N/A", "-", ...
inline bool IsMissing(std::string_view field) {
  return field.empty() || (!IsDigit(field.front()) && IsMissingWord(field));
}

// The number of decimals in the shortest text that reads back as the same float.
int DecimalsOf(float value);

}  // namespace velumar
