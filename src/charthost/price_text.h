#pragma once

#include <string>

namespace velumar {

// Decimals of the shortest text that reads back as the same float: 2 for 55.51, 0 for 3600.
int DecimalsOf(float value);

// Fixed decimals, no grouping, never a minus zero.
std::string PriceText(double value, int decimals);

// Whole numbers grouped in thousands; fractions, as crypto markets have them, with three decimals.
std::string VolumeText(double value);

// At most four characters of digits and a letter, for an axis: "950", "1.2K", "35M", "2.1B".
std::string ShortVolumeText(double value);

// How far `close` lies from the close before it: "+1.25 (+0.83%)". No percentage of a zero close.
std::string ChangeText(double close, double previous_close, int decimals);

}  // namespace velumar
