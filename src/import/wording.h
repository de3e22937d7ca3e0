#pragma once

#include <cstdint>
#include <string>

namespace velumar {

// Phrases of the import's messages.

std::string Counted(std::int64_t count, const std::string& unit);  // "1 bar", "32,768 bars"
std::string DayText(std::int32_t date);                            // "3 January 2020"
std::string DurationText(int seconds);                             // "4 hours", "1 minute"

}  // namespace velumar
