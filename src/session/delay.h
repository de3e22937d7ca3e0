#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace velumar {

// The seconds between two bars, limited to what the 16-bit delay can hold: a text that is not a
// number, or is negative, counts as "3", and more than 32 as "32". A fraction counts as written,
// with a point or a comma.
std::string UsableDelay(std::string_view seconds);

// The same in milliseconds, and back. More than 0 seconds are at least a millisecond, since no
// milliseconds would mean a second.
std::int16_t DelayMilliseconds(std::string_view seconds);
std::string DelaySeconds(std::int16_t milliseconds);

}  // namespace velumar
