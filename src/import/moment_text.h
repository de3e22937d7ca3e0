#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "import/import_options.h"

namespace velumar {

// When a bar is, as far as one field states it.
struct Moment {
  std::int32_t date = 0;                  // yyyymmdd
  std::optional<std::int32_t> time = {};  // hhmmss
  std::optional<int> utc_offset = {};     // minutes east of UTC
  std::string_view zone = {};             // as written after the time: "Z", "GMT+0200", "EST"
};

// What the digits of a time without colons mean.
enum class TimeDigits : std::uint8_t {
  kHoursAndMinutes,  // 930, 0930; with five or six digits there are seconds as well
  kWithSeconds       // the same column has 93000 and 500, so 500 is five minutes past midnight
};

// Reads a date, with or without a time: digits (yyyymmdd, yyyymmddhhmm, yyyymmddhhmmss), three
// numbers, English month names, weekday names before them, and the times of ReadTimeText. Returns
// nothing if the text is no such date; date and time may be unreal, as 30 February is. Two-digit
// years are 1969 to 2068.
std::optional<Moment> ReadDateText(std::string_view text, DateOrder order);
// Hours and minutes, seconds, fractions of a second (dropped), AM or PM, a zone.
std::optional<Moment> ReadTimeText(std::string_view text, TimeDigits digits);

inline constexpr std::int32_t kEndOfDay = 240000;

// True from 0:00 to 24:00, the end of a day.
bool IsRealTime(std::int32_t time);

// The whole number of a Unix time; its decimals are dropped.
std::optional<std::int64_t> ReadUnixNumber(std::string_view text);

// Dates whose order is a matter of the file: numbers of one or two digits, of which the last may be
// a year of four.
struct OrderlessDate {
  int first = 0;
  int second = 0;
  bool has_full_year = false;
  bool has_points = false;  // 2.1.2020
};
std::optional<OrderlessDate> ReadOrderlessDate(std::string_view text);

// The date of six digits, yymmdd.
std::optional<std::int32_t> ReadSixDigits(std::string_view text);

}  // namespace velumar
