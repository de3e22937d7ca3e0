#include "marketdata/csv_values.h"

#include <charconv>
#include <chrono>
#include <string>
#include <system_error>

#include "marketdata/csv_error.h"
#include "marketdata/number_format.h"

namespace velumar {

namespace {

[[noreturn]] void Refuse(std::string_view cell, std::string_view reason) {
  if (cell.empty()) throw CsvError("is empty");
  throw CsvError("\"" + std::string(cell) + "\" " + std::string(reason));
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

bool IsDigits(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

int DigitsValue(std::string_view digits) {
  int value = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), value);
  return value;
}

// The digits hhmmss of "h:mm" to "hh:mm:ss"; -1 for a text of another shape.
std::int32_t ColonTime(std::string_view text) {
  std::string full = (text.find(':') == 1 ? "0" : "") + std::string(text);
  if (full.size() == 5) full += ":00";
  if (full.size() != 8 || full[2] != ':' || full[5] != ':') return -1;
  full.erase(5, 1).erase(2, 1);
  return IsDigits(full) ? DigitsValue(full) : -1;
}

}  // namespace

float CsvNumber(std::string_view cell) {
  std::string_view text = cell;
  if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
  float value = 0;
  const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), value);
  const bool whole = end == text.data() + text.size();
  if (fault == std::errc::invalid_argument || !whole) Refuse(cell, "is no number");
  if (fault != std::errc() || !IsStorable(value, text)) {
    Refuse(cell, "can't be stored; numbers are 0 or between 1.2E-38 and 1.7E+38");
  }
  return value == 0 ? 0 : value;
}

std::int32_t CsvTime(std::string_view cell) {
  const bool digits = IsDigits(cell) && cell.size() <= 6;
  const std::int32_t time = digits ? DigitsValue(cell) : ColonTime(cell);
  if (time < 0) Refuse(cell, "is no time; times are hh:mm, hh:mm:ss or hhmmss");
  if (time / 10000 > 23 || time / 100 % 100 > 59 || time % 100 > 59) {
    Refuse(cell, "is no time of a day");
  }
  return time;
}

std::int32_t CsvDay(int year, int month, int day, std::string_view cell) {
  const std::chrono::year_month_day date{std::chrono::year(year),
                                         std::chrono::month(static_cast<unsigned>(month)),
                                         std::chrono::day(static_cast<unsigned>(day))};
  if (!date.ok()) Refuse(cell, "is no day of the calendar");
  const std::int32_t number = year * 10000 + month * 100 + day;
  if (!StoredDate(number)) Refuse(cell, "can't be stored; the files begin in 1900");
  return number;
}

}  // namespace velumar
