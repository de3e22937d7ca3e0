#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace velumar {

struct CsvDateTime {
  std::int32_t date = 0;             // yyyymmdd
  std::optional<std::int32_t> time;  // hhmmss, where the cell holds one
};

// How the dates of a file are written: yyyymmdd and yyyy-mm-dd, or a pattern of the trader's own
// such as "%d.%m.%Y". Behind either a time may follow after a blank or a "T".
//
// A pattern knows %Y (four digits), %y (two digits, 69 to 99 are of the last century), %m, %d, %b
// or %B (the English name of a month, whole or its first three letters), %H, %I with %p, %M, %S and
// %%. Any other character stands for itself.
class CsvDateFormat {
 public:
  CsvDateFormat() = default;
  // Throws CsvError for a pattern without a year, a month and a day, or with a conversion that
  // isn't known.
  explicit CsvDateFormat(std::string pattern);

  // Throws CsvError with a reason that quotes the cell.
  CsvDateTime Read(std::string_view cell) const;

 private:
  CsvDateTime ReadPattern(std::string_view cell) const;

  std::string pattern_;
};

}  // namespace velumar
