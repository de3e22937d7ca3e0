#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "import/date_pattern.h"
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

// How a column writes its dates.
struct DateStyle {
  enum class Kind : std::uint8_t { kText, kUnix, kPattern };

  Kind kind = Kind::kText;
  DateOrder order = DateOrder::kDayMonthYear;  // of dates in numbers that don't start with the year
  std::int64_t per_second = 1;                 // Unix time: 1, 1000, ...
  std::optional<DatePattern> pattern;
};

// Reads a date, with or without a time: digits (yyyymmdd, yyyymmddhhmm, yyyymmddhhmmss), three
// numbers, English month names, weekday names before them, and the times of ReadTime. Nothing if
// the text is no such date; a date such as 30 February is returned as it is. Two-digit years are
// 1969 to 2068.
std::optional<Moment> ReadDateText(std::string_view text, DateOrder order);
// Hours and minutes, seconds, fractions of a second (dropped), AM or PM, a zone. 24:00 is allowed.
std::optional<Moment> ReadTimeText(std::string_view text, TimeDigits digits);

// Reads a date of a column. Throws ImportError, quoting the field, if it is none, unreal or before
// 1900.
Moment ReadDate(std::string_view field, const DateStyle& style);
// Returns the time of day, without a date. Throws ImportError.
Moment ReadTime(std::string_view field, TimeDigits digits);

// The number of a Unix time; nothing for another text. Decimals are
// dropped.
std::optional<std::int64_t> ReadUnixNumber(std::string_view text);

// Three numbers of at most two digits, or four for a year at the end: the dates whose order is a
// matter of the file. Returns the first two; nothing for all other dates.
struct TwoNumbers {
  int first = 0;
  int second = 0;
};
std::optional<TwoNumbers> OrderlessNumbers(std::string_view text);

}  // namespace velumar
