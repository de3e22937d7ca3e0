#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "import/date_pattern.h"
#include "import/import_options.h"
#include "import/moment_text.h"
#include "marketdata/bar.h"

namespace velumar {

// How a column writes its dates.
struct DateStyle {
  enum class Kind : std::uint8_t { kText, kSixDigits, kUnix, kPattern };

  Kind kind = Kind::kText;
  DateOrder order = DateOrder::kDayMonthYear;  // of dates in numbers that don't start with the year
  std::int64_t per_second = 1;                 // Unix time: 1, 1000, ...
  // 24:00 follows each date: not the start of the next day, but the end of this one.
  bool ends_of_days = false;
  std::optional<DatePattern> pattern;
};

// Reads the dates and times of a file's columns. Throws ImportError, quoting the field, for one
// that cannot be read, is unreal or is before 1900.
class MomentReader {
 public:
  MomentReader(DateStyle style, TimeDigits digits) : style_(std::move(style)), digits_(digits) {}

  // The date, and the time if the field has one. 24:00 becomes 0:00 of the next day.
  Moment Date(std::string_view field);
  // The time of a column of its own, 240000 included; of a whole moment only the time.
  Moment Time(std::string_view field);

  // Sets date and time of a bar of the same day as the last one, if the time is written in a usual
  // way; else returns false.
  bool TakeNext(std::string_view date, std::string_view time, Bar& bar) const;

 private:
  bool IsLast(std::string_view date) const;
  std::optional<Moment> ReadDate(std::string_view field);

  DateStyle style_;
  TimeDigits digits_;
  // The last date: the bars of a day follow each other.
  std::array<char, 10> last_text_{};
  std::size_t last_size_ = 0;
  std::int32_t last_date_ = 0;
};

// The first moment of the day after 24:00.
void MoveMidnight(Moment& moment);

}  // namespace velumar
