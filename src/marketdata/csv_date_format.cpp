#include "marketdata/csv_date_format.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

#include "base/text.h"
#include "marketdata/csv_error.h"
#include "marketdata/csv_values.h"

namespace velumar {

namespace {

constexpr std::string_view kConversions = "YymdbBHIpMS%";
constexpr std::array<std::string_view, 12> kMonths = {
    "JANUARY", "FEBRUARY", "MARCH",     "APRIL",   "MAY",      "JUNE",
    "JULY",    "AUGUST",   "SEPTEMBER", "OCTOBER", "NOVEMBER", "DECEMBER"};

// Reads a cell from its front, and what was read of the date so far. Each Take answers whether the
// cell has what the pattern asks for.
class Scan {
 public:
  explicit Scan(std::string_view text) : rest_(text) {}

  std::string_view Rest() const { return rest_; }

  bool Take(char conversion) {
    switch (conversion) {
      case 'Y':
        return TakeNumber(4, 4, year_);
      case 'y':
        return TakeShortYear();
      case 'm':
        return TakeNumber(1, 2, month_);
      case 'd':
        return TakeNumber(1, 2, day_);
      case 'b':
      case 'B':
        return TakeMonthName();
      case 'H':
      case 'I':
        return TakeNumber(1, 2, hour_);
      case 'M':
        return TakeNumber(2, 2, minute_);
      case 'S':
        return TakeNumber(2, 2, second_);
      case 'p':
        return TakeHalfOfDay();
      default:
        return TakeLiteral(conversion);
    }
  }

  bool TakeLiteral(char literal) {
    if (!rest_.starts_with(literal)) return false;
    rest_.remove_prefix(1);
    return true;
  }

  std::int32_t Date(std::string_view cell) const { return CsvDay(year_, month_, day_, cell); }

  // As a text of digits, so that the rules for times hold here too.
  std::string Time() const {
    const bool twelve = half_of_day_ != ' ';
    if (twelve && (hour_ < 1 || hour_ > 12)) return std::to_string(hour_) + " o'clock";
    const int hour = twelve ? hour_ % 12 + (half_of_day_ == 'P' ? 12 : 0) : hour_;
    return std::to_string(hour * 10000 + minute_ * 100 + second_);
  }

 private:
  bool TakeNumber(std::size_t at_least, std::size_t at_most, int& value) {
    const auto digits = std::min({rest_.find_first_not_of("0123456789"), rest_.size(), at_most});
    if (digits < at_least) return false;
    std::from_chars(rest_.data(), rest_.data() + digits, value);
    rest_.remove_prefix(digits);
    return true;
  }

  bool TakeShortYear() {
    if (!TakeNumber(2, 2, year_)) return false;
    year_ += year_ < 69 ? 2000 : 1900;
    return true;
  }

  bool TakeMonthName() {
    const std::string upper = UpperCased(rest_);
    for (std::size_t i = 0; i < kMonths.size(); ++i) {
      if (!upper.starts_with(kMonths[i].substr(0, 3))) continue;
      rest_.remove_prefix(upper.starts_with(kMonths[i]) ? kMonths[i].size() : 3);
      month_ = static_cast<int>(i) + 1;
      return true;
    }
    return false;
  }

  bool TakeHalfOfDay() {
    const std::string upper = UpperCased(rest_.substr(0, 2));
    if (upper != "AM" && upper != "PM") return false;
    half_of_day_ = upper.front();
    rest_.remove_prefix(2);
    return true;
  }

  std::string_view rest_;
  int year_ = 0;
  int month_ = 0;
  int day_ = 0;
  int hour_ = 0;
  int minute_ = 0;
  int second_ = 0;
  char half_of_day_ = ' ';
};

[[noreturn]] void RefuseDate(std::string_view cell, const std::string& wanted) {
  if (cell.empty()) throw CsvError("is empty");
  throw CsvError("\"" + std::string(cell) + "\" is no date; " + wanted);
}

// Whether `text` begins as `shape` does, a 0 standing for any digit.
bool HasShape(std::string_view text, std::string_view shape) {
  return text.size() >= shape.size() &&
         std::ranges::equal(text.substr(0, shape.size()), shape, [](char c, char wanted) {
           return wanted == '0' ? c >= '0' && c <= '9' : c == wanted;
         });
}

bool Matches(Scan& scan, std::string_view pattern) {
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    const bool taken = pattern[i] == '%' ? scan.Take(pattern[++i]) : scan.TakeLiteral(pattern[i]);
    if (!taken) return false;
  }
  return true;
}

[[noreturn]] void RefuseRest(std::string_view cell, std::string_view rest) {
  RefuseDate(cell, "\"" + std::string(rest) + "\" is left over");
}

// The time behind a date. Only the fourteen digits yyyymmddhhmmss need nothing between.
std::optional<std::int32_t> TimeBehind(std::string_view rest, std::string_view cell) {
  if (rest.empty()) return std::nullopt;
  if (rest.front() == ' ' || rest.front() == 'T') return CsvTime(Trimmed(rest.substr(1)));
  if (cell.size() == 14 && HasShape(cell, "00000000000000")) return CsvTime(rest);
  RefuseRest(cell, rest);
}

bool HasConversion(std::string_view pattern, std::string_view letters) {
  for (std::size_t i = 0; i + 1 < pattern.size(); ++i) {
    if (pattern[i] != '%') continue;
    if (letters.find(pattern[++i]) != std::string_view::npos) return true;
  }
  return false;
}

void RequireKnown(std::string_view pattern) {
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    if (pattern[i] != '%') continue;
    const std::string conversion(pattern.substr(i++, 2));
    if (conversion.size() < 2 || kConversions.find(conversion[1]) == std::string_view::npos) {
      throw CsvError("the date format knows no \"" + conversion + "\"");
    }
  }
}

}  // namespace

CsvDateFormat::CsvDateFormat(std::string pattern) : pattern_(std::move(pattern)) {
  RequireKnown(pattern_);
  for (const std::string_view needed : {"Yy", "mbB", "d"}) {
    if (!HasConversion(pattern_, needed)) {
      throw CsvError("the date format \"" + pattern_ + "\" needs a year, a month and a day");
    }
  }
  if (HasConversion(pattern_, "I") != HasConversion(pattern_, "p")) {
    throw CsvError("the date format \"" + pattern_ + "\" has one of %I and %p without the other");
  }
}

CsvDateTime CsvDateFormat::Read(std::string_view cell) const {
  if (!pattern_.empty()) return ReadPattern(cell);
  Scan scan(cell);
  const bool compact = HasShape(cell, "00000000");
  if (!compact && !HasShape(cell, "0000-00-00")) {
    RefuseDate(cell, "dates are yyyymmdd or yyyy-mm-dd unless a date format says otherwise");
  }
  Matches(scan, compact ? "%Y%m%d" : "%Y-%m-%d");
  return {scan.Date(cell), TimeBehind(scan.Rest(), cell)};
}

CsvDateTime CsvDateFormat::ReadPattern(std::string_view cell) const {
  Scan scan(cell);
  if (!Matches(scan, pattern_)) RefuseDate(cell, "the date format is \"" + pattern_ + "\"");
  if (!HasConversion(pattern_, "HIMS")) return {scan.Date(cell), TimeBehind(scan.Rest(), cell)};
  if (!scan.Rest().empty()) RefuseRest(cell, scan.Rest());
  return {scan.Date(cell), CsvTime(scan.Time())};
}

}  // namespace velumar
