#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace velumar {

// Dates are numbers yyyymmdd; 0 means none.

// True for a day of the calendar in the years 1 to 9999.
bool IsRealDate(std::int32_t date);
std::int32_t DaysLater(std::int32_t date, int days);

// The date through a short date pattern of the letters d, M and y ("dd/MM/yyyy"); "N/A" for 0. The
// numbers come straight from the date, so a damaged bar shows what it holds. Text between single
// quotes and all other characters stand for themselves.
std::string DateText(std::int32_t date, std::string_view pattern);

// The same for "2007-01-25", as dates lie in a ledger; any other text as it is.
std::string IsoDateText(std::string_view iso_date, std::string_view pattern);

// The way back: the numbers of the text in the order of the pattern. Two-digit years are 1930 to
// 2029. Nothing when the text is no such date.
std::optional<std::int32_t> DateFromText(std::string_view text, std::string_view pattern);

}  // namespace velumar
