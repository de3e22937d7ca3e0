#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace velumar {

// The values of CSV fields. A field that cannot be read, or cannot be stored in a market data file,
// throws CsvError with a reason that quotes it (`"x" is not a number`).

// The nearest 32-bit float of a decimal number, with or without an exponent.
float CsvNumber(std::string_view field);

// Returns hhmmss. Reads hh:mm, hh:mm:ss, or up to six digits, which always mean hhmmss with or
// without leading zeros: 930 is nine and a half minutes past midnight.
std::int32_t CsvTime(std::string_view field);

struct CsvDateTime {
  std::int32_t date = 0;             // yyyymmdd
  std::optional<std::int32_t> time;  // hhmmss, if the field has one
};

// The format of a file's dates: yyyymmdd or yyyy-mm-dd, or a pattern such as "%d.%m.%Y". A date
// without a time in its format may be followed by a blank or a "T" and a time.
//
// A pattern may contain %Y, %y (69 to 99 are 1969 to 1999), %m, %d, %b or %B (the English name of a
// month, in full or its first three letters), %H, %I with %p, %M, %S and %%. %Y has exactly four
// digits, %y, %M and %S exactly two, %m, %d, %H and %I one or two; none has a sign. Each takes as
// many digits as it can, so "%H%M" refuses 930 and "%d%m%y" refuses 50124. A blank matches one
// or more blanks; all other characters match themselves.
class CsvDateFormat {
 public:
  CsvDateFormat() = default;
  // Throws CsvError for a pattern without year, month and day, or with an unknown conversion.
  explicit CsvDateFormat(std::string pattern);

  CsvDateTime Read(std::string_view field) const;

 private:
  CsvDateTime ReadPattern(std::string_view field) const;

  std::string pattern_;
};

}  // namespace velumar
