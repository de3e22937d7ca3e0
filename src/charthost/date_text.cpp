#include "charthost/date_text.h"

#include <array>
#include <string_view>

namespace velumar {
namespace {

constexpr std::array<std::string_view, 12> kMonths = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                      "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
constexpr std::array<std::string_view, 7> kWeekdays = {"Sun", "Mon", "Tue", "Wed",
                                                       "Thu", "Fri", "Sat"};

std::string TwoDigits(int number) { return (number < 10 ? "0" : "") + std::to_string(number); }

}  // namespace

CalendarDate SplitDate(std::int32_t yyyymmdd) {
  return {yyyymmdd / 10000, yyyymmdd / 100 % 100, yyyymmdd % 100};
}

// The year is counted from March, so that the leap day comes last.
std::int64_t DayNumber(const CalendarDate& date) {
  const std::int64_t year = date.month > 2 ? date.year : date.year - 1;
  const std::int64_t era = (year >= 0 ? year : year - 399) / 400;
  const std::int64_t year_of_era = year - era * 400;
  const std::int64_t month = (date.month + 9) % 12;
  const std::int64_t day_of_year = (153 * month + 2) / 5 + date.day - 1;
  const std::int64_t day_of_era =
      year_of_era * 365 + year_of_era / 4 - year_of_era / 100 + day_of_year;
  return era * 146097 + day_of_era - 719468;
}

std::string MonthText(int month) {
  return month >= 1 && month <= 12 ? std::string(kMonths[month - 1]) : "?";
}

std::string DayText(std::int32_t yyyymmdd) {
  const CalendarDate date = SplitDate(yyyymmdd);
  return std::to_string(date.day) + " " + MonthText(date.month) + " " + std::to_string(date.year);
}

std::string LongDayText(std::int32_t yyyymmdd) {
  const std::int64_t weekday = ((DayNumber(SplitDate(yyyymmdd)) + 4) % 7 + 7) % 7;
  return std::string(kWeekdays[weekday]) + " " + DayText(yyyymmdd);
}

std::string TimeText(std::int32_t hhmmss) {
  const int seconds = hhmmss % 100;
  const std::string minutes = TwoDigits(hhmmss / 10000) + ":" + TwoDigits(hhmmss / 100 % 100);
  return seconds == 0 ? minutes : minutes + ":" + TwoDigits(seconds);
}

std::string IntervalTitle(int interval) {
  if (interval < 0) return "Daily";
  if (interval == 0) return "Intraday";
  return std::to_string(interval) + (interval == 1 ? " minute" : " minutes");
}

}  // namespace velumar
