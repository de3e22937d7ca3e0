#include "csv/csv_values.h"

#include <date/date.h>

#include <algorithm>
#include <charconv>
#include <sstream>
#include <system_error>
#include <utility>

#include "base/dates.h"
#include "base/text.h"
#include "csv/csv_text.h"
#include "marketdata/number_format.h"

namespace velumar {

namespace {

[[noreturn]] void Refuse(std::string_view field, std::string_view reason) {
  if (field.empty()) throw CsvError("is empty");
  throw CsvError("\"" + std::string(field) + "\" " + std::string(reason));
}

[[noreturn]] void RefuseRest(std::string_view field, std::string_view rest) {
  Refuse(field, "is not a date; \"" + std::string(rest) + "\" is unexpected");
}

// A digit that makes the number other than zero, however small its exponent.
bool HasValue(std::string_view number) {
  return number.substr(0, number.find_first_of("eE")).find_first_of("123456789") !=
         std::string_view::npos;
}

bool IsStorable(float value, std::string_view text) {
  if (value == 0) return !HasValue(text);
  const auto stored = MbfFromFloat(value);
  return stored && FloatFromMbf(*stored) == value;
}

// True if `text` begins like `shape`, in which 0 matches any digit.
bool HasShape(std::string_view text, std::string_view shape) {
  return text.size() >= shape.size() &&
         std::ranges::equal(text.substr(0, shape.size()), shape, [](char c, char wanted) {
           return wanted == '0' ? c >= '0' && c <= '9' : c == wanted;
         });
}

int DigitsValue(std::string_view digits) {
  int value = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), value);
  return value;
}

// The digits hhmmss of "h:mm" to "hh:mm:ss"; -1 for any other text.
std::int32_t ColonTime(std::string_view text) {
  std::string full = (text.find(':') == 1 ? "0" : "") + std::string(text);
  if (full.size() == 5) full += ":00";
  if (full.size() != 8 || !HasShape(full, "00:00:00")) return -1;
  return DigitsValue(full.erase(5, 1).erase(2, 1));
}

std::int32_t CheckedTime(std::int32_t time, std::string_view field) {
  if (time / 10000 > 23 || time / 100 % 100 > 59 || time % 100 > 59) {
    Refuse(field, "is not a valid time");
  }
  return time;
}

std::int32_t CheckedDate(std::int32_t date, std::string_view field) {
  if (!IsRealDate(date)) Refuse(field, "is not a valid date");
  if (!StoredDate(date)) Refuse(field, "can't be stored; market data begins in 1900");
  return date;
}

// The time after a date. Only the fourteen digits yyyymmddhhmmss need no separator.
std::optional<std::int32_t> TimeAfterDate(std::string_view rest, std::string_view field) {
  if (rest.empty()) return std::nullopt;
  if (rest.front() == ' ' || rest.front() == 'T') return CsvTime(Trimmed(rest.substr(1)));
  if (field.size() == 14 && HasShape(field, "00000000000000")) return CsvTime(rest);
  RefuseRest(field, rest);
}

bool HasConversion(std::string_view pattern, std::string_view letters) {
  for (std::size_t i = 0; i + 1 < pattern.size(); ++i) {
    if (pattern[i] != '%') continue;
    if (letters.find(pattern[++i]) != std::string_view::npos) return true;
  }
  return false;
}

void RequireKnownConversions(std::string_view pattern) {
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    if (pattern[i] != '%') continue;
    const std::string conversion(pattern.substr(i++, 2));
    constexpr std::string_view kKnown = "YymdbBHIpMS%";
    if (conversion.size() < 2 || kKnown.find(conversion[1]) == std::string_view::npos) {
      throw CsvError("the date format has an unknown \"" + conversion + "\"");
    }
  }
}

std::size_t CountLeading(std::string_view text, std::string_view characters) {
  return std::min(text.find_first_not_of(characters), text.size());
}

std::size_t MonthNameLength(std::string_view text, std::int32_t date) {
  const std::string name = UpperCased(DateText(date, "MMMM"));
  return UpperCased(text.substr(0, name.size())) == name ? name.size() : 3;
}

// The length of what a conversion has read at the start of `text`; nothing if it should have
// refused it. `date` is the date that was read.
std::optional<std::size_t> LengthRead(char conversion, std::string_view text, std::int32_t date) {
  if (conversion == '%') return 1;
  if (conversion == 'p') return 2;
  if (conversion == 'b' || conversion == 'B') return MonthNameLength(text, date);
  const bool short_form = std::string_view("mdHI").find(conversion) != std::string_view::npos;
  const std::size_t most = conversion == 'Y' ? 4 : 2;
  const std::size_t digits = std::min(CountLeading(text, "0123456789"), most);
  if (digits < (short_form ? 1 : most)) return std::nullopt;
  return digits;
}

// The date library also takes fewer digits, signs and decimal points, so that 100 would be 10:00
// in the pattern %H%M. True if all numbers of `text`, which it has read as `date`, are whole.
bool HasWholeNumbers(std::string_view text, std::string_view pattern, std::int32_t date) {
  static constexpr std::string_view kBlanks = " \t\n\v\f\r";
  const auto blank = [](char c) { return kBlanks.find(c) != std::string_view::npos; };
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    std::optional<std::size_t> length = 1;
    if (pattern[i] == '%') {
      length = LengthRead(pattern[++i], text, date);
    } else if (blank(pattern[i])) {
      const bool more = i > 0 && blank(pattern[i - 1]);
      length = CountLeading(text, kBlanks);
      if (length == 0 && !more) return false;
    }
    if (!length) return false;
    text.remove_prefix(std::min(*length, text.size()));
  }
  return true;
}

}  // namespace

float CsvNumber(std::string_view field) {
  std::string_view text = field;
  if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
  float value = 0;
  const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), value);
  const bool whole = end == text.data() + text.size();
  if (fault == std::errc::invalid_argument || !whole) Refuse(field, "is not a number");
  if (fault != std::errc() || !IsStorable(value, text)) {
    Refuse(field, "can't be stored; numbers are 0 or between 1.2E-38 and 1.7E+38");
  }
  return value == 0 ? 0 : value;
}

std::int32_t CsvTime(std::string_view field) {
  const bool digits = !field.empty() && field.size() <= 6 &&
                      field.find_first_not_of("0123456789") == std::string_view::npos;
  const std::int32_t time = digits ? DigitsValue(field) : ColonTime(field);
  if (time < 0) Refuse(field, "is not a time; times are hh:mm, hh:mm:ss or hhmmss");
  return CheckedTime(time, field);
}

CsvDateFormat::CsvDateFormat(std::string pattern) : pattern_(std::move(pattern)) {
  RequireKnownConversions(pattern_);
  for (const std::string_view needed : {"Yy", "mbB", "d"}) {
    if (!HasConversion(pattern_, needed)) {
      throw CsvError("the date format \"" + pattern_ + "\" needs a year, a month and a day");
    }
  }
  if (HasConversion(pattern_, "I") != HasConversion(pattern_, "p")) {
    throw CsvError("the date format \"" + pattern_ + "\" has one of %I and %p without the other");
  }
}

// The two usual formats are read digit by digit, since a stream for each date nearly doubles the
// time that an import takes.
CsvDateTime CsvDateFormat::Read(std::string_view field) const {
  if (!pattern_.empty()) return ReadPattern(field);
  const bool compact = HasShape(field, "00000000");
  if (!compact && !HasShape(field, "0000-00-00")) {
    Refuse(field, "is not a date; dates are yyyymmdd or yyyy-mm-dd unless a date format is set");
  }
  const std::size_t gap = compact ? 0 : 1;
  const int month_and_day =
      DigitsValue(field.substr(4 + gap, 2)) * 100 + DigitsValue(field.substr(6 + 2 * gap, 2));
  return {CheckedDate(DigitsValue(field.substr(0, 4)) * 10000 + month_and_day, field),
          TimeAfterDate(field.substr(8 + 2 * gap), field)};
}

CsvDateTime CsvDateFormat::ReadPattern(std::string_view field) const {
  std::istringstream stream{std::string(field)};
  date::fields<std::chrono::seconds> read;
  const bool matches = !date::from_stream(stream, pattern_.c_str(), read).fail();
  const std::int32_t day = static_cast<int>(read.ymd.year()) * 10000 +
                           static_cast<int>(unsigned{read.ymd.month()}) * 100 +
                           static_cast<int>(unsigned{read.ymd.day()});
  if (!matches || !HasWholeNumbers(field, pattern_, day)) {
    Refuse(field, "is not a date; the date format is \"" + pattern_ + "\"");
  }
  CheckedDate(day, field);
  const auto unread = static_cast<std::size_t>(stream.rdbuf()->in_avail());
  const std::string_view rest = field.substr(field.size() - unread);
  if (!read.has_tod) return {day, TimeAfterDate(rest, field)};
  if (!rest.empty()) RefuseRest(field, rest);
  const auto time = read.tod.hours().count() * 10000 + read.tod.minutes().count() * 100 +
                    read.tod.seconds().count();
  return {day, CheckedTime(static_cast<std::int32_t>(time), field)};
}

}  // namespace velumar
