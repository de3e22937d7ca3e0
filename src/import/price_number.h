#pragma once

#include <string_view>

namespace velumar {

// How a file writes its numbers. Thousands may be grouped by the other of comma and point, by
// blanks or by apostrophes.
struct NumberStyle {
  bool decimal_comma = false;
};

struct PriceNumber {
  float value = 0;
  int decimals = 0;  // of the text after scaling, perhaps more than the float needs
};

// The nearest 32-bit float of a decimal number times 10 to the power `shift`. Currency signs, a
// percent sign at the end and thousands groups are dropped; K, M, B and T at the end count as
// thousands to trillions. Throws ImportError, quoting the field, if it is not a number or cannot be
// stored in market data.
PriceNumber ReadNumber(std::string_view field, NumberStyle style, int shift);

// True for what stands for a missing value: nothing, "null", "N/A", "-", ...
bool IsMissing(std::string_view field);

// The number of decimals in the shortest text that reads back as the same float.
int DecimalsOf(float value);

}  // namespace velumar
