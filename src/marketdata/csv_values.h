#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace velumar {

// The values of CSV cells. What can't be read, or can't be stored in a market data file, throws
// CsvError with a reason that quotes the cell.

// The nearest 32-bit float of a decimal number, with or without an exponent.
float CsvNumber(std::string_view cell);

// hh:mm, hh:mm:ss, or up to six digits that are always hhmmss, with or without leading zeros: 930
// is nine minutes and thirty seconds after midnight.
std::int32_t CsvTime(std::string_view cell);

struct CsvDateTime {
  std::int32_t date = 0;              // yyyymmdd
  std::optional<std::int32_t> time;   // where the cell holds one behind the date
};

// How the dates of a file are written: yyyymmdd and yyyy-mm-dd, or a pattern of the trader's own
// such as "%d.%m.%Y". A time may follow the date behind a blank or a "T".
class CsvDateFormat {
 public:
  CsvDateFormat() = default;
  // Throws CsvError for a pattern that tells no full date, or has a conversion that isn't known.
  explicit CsvDateFormat(std::string pattern);

  CsvDateTime Read(std::string_view cell) const;

 private:
  CsvDateTime ReadPattern(std::string_view cell) const;

  std::string pattern_;
};

}  // namespace velumar
