#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace velumar {

// Dates are numbers yyyymmdd, 0 for none; times are numbers hhmmss.

// True for a real calendar date in the years 1 to 9999.
bool IsRealDate(std::int32_t date);
// The date of a text of eight digits, yyyymmdd; nothing for any other text or an unreal date.
std::optional<std::int32_t> DateFromDigits(std::string_view text);
// Days since 1 January 1970; unspecified for a date that is not real.
std::int64_t DayNumber(std::int32_t date);
// 0 is Monday. The date must be real.
int Weekday(std::int32_t date);
// The date `days` days later, or earlier if negative. The date must be real.
std::int32_t DaysLater(std::int32_t date, int days);
// Minutes since midnight.
int MinuteOfDay(std::int32_t time);

// The date in a short date pattern of d, M and y ("dd/MM/yyyy"); "N/A" for 0. Names of months and
// days are English. Day, month and year are shown as they are, also those of a damaged bar. Text in
// single quotes and all other characters are copied.
std::string DateText(std::int32_t date, std::string_view pattern);

// "2007-01-25", as a ledger stores dates.
std::string IsoDate(std::int32_t date);

// DateText of a date in that form; returns any other text unchanged.
std::string IsoDateText(std::string_view iso_date, std::string_view pattern);
// A moment as "2026-11-27 07:03:40", the same without the seconds: "11/27/2026 07:03".
std::string IsoMinuteText(std::string_view moment, std::string_view pattern);

// The opposite of DateText: the numbers of the text in the order of the pattern. Two-digit years
// are 1930 to 2029. Returns nothing if the text is not a real date in that pattern.
std::optional<std::int32_t> DateFromText(std::string_view text, std::string_view pattern);

// A date as people type it: 20241231, 2024-12-31 or in the pattern.
std::optional<std::int32_t> TypedDate(std::string_view text, std::string_view pattern);

}  // namespace velumar
