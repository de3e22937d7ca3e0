#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace velumar {

// The seconds between two bars, limited to what the 16-bit delay can hold: a text that is not a
// whole number, or is negative, counts as "3", and 33 and above as "32".
std::string UsableDelay(std::string_view seconds);

// The same in milliseconds, and back.
std::int16_t DelayMilliseconds(std::string_view seconds);
std::string DelaySeconds(std::int16_t milliseconds);

}  // namespace velumar
