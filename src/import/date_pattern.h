#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace velumar {

// The pattern of a file's dates, such as "%d.%m.%Y". It may contain %Y, %y (69 to 99 are 1969 to
// 1999), %m, %d, %b or %B (the English name of a month, in full or its first three letters), %H,
// %I with %p, %M, %S and %%. %Y has exactly four digits, %y, %M and %S exactly two, %m, %d, %H and
// %I one or two; none has a sign. Each takes as many digits as it can, so "%H%M" refuses 930 and
// "%d%m%y" refuses 50124. A blank matches one or more blanks; all other characters match
// themselves.
class DatePattern {
 public:
  // Throws ImportError for a pattern without year, month and day, or with an unknown conversion.
  explicit DatePattern(std::string pattern);

  struct Match {
    std::int32_t date = 0;                  // yyyymmdd, perhaps not a real one
    std::optional<std::int32_t> time = {};  // hhmmss, if the pattern has one
    std::string_view rest = {};             // what follows
  };
  // Nothing if the text does not match.
  std::optional<Match> Read(std::string_view text) const;

  const std::string& Text() const { return pattern_; }

 private:
  std::string pattern_;
};

}  // namespace velumar
