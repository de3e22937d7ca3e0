#pragma once

#include <cstdint>
#include <string_view>

namespace velumar {

// The values of CSV cells. What can't be read, or can't be stored in a market data file, throws
// CsvError with a reason that quotes the cell ("\"x\" is no number").

// The nearest 32-bit float of a decimal number, with or without an exponent.
float CsvNumber(std::string_view cell);

// hh:mm, hh:mm:ss, or up to six digits that are always hhmmss, with or without leading zeros: 930
// is nine minutes and thirty seconds after midnight.
std::int32_t CsvTime(std::string_view cell);

// yyyymmdd of a day that the calendar has and the files can hold. `cell` is quoted in the reason.
std::int32_t CsvDay(int year, int month, int day, std::string_view cell);

}  // namespace velumar
