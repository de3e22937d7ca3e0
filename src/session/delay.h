#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace velumar {

// The seconds between two fed bars as the box holds them, brought into what the clock can hold: a
// text that is no whole number, or is negative, counts as "3", one of 33 and above as "32".
std::string UsableDelay(std::string_view seconds);

// The same as the milliseconds that the feed waits, and back from them.
std::int16_t DelayMilliseconds(std::string_view seconds);
std::string DelaySeconds(std::int16_t milliseconds);

}  // namespace velumar
