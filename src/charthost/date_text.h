#pragma once

#include <cstdint>
#include <string>

namespace velumar {

// A date of the calendar, taken out of a yyyymmdd number.
struct CalendarDate {
  int year;
  int month;
  int day;
};

CalendarDate SplitDate(std::int32_t yyyymmdd);

// Days since 1 January 1970, which was a Thursday.
std::int64_t DayNumber(const CalendarDate& date);

// "Feb"; "?" for a month that no calendar has, as damaged files may hold.
std::string MonthText(int month);

// "12 Feb 2015"
std::string DayText(std::int32_t yyyymmdd);

// "Thu 12 Feb 2015"
std::string LongDayText(std::int32_t yyyymmdd);

// "09:30", with seconds only where there are any.
std::string TimeText(std::int32_t hhmmss);

// "Daily" for -1, "Intraday" where the minutes are unknown, else "5 minutes".
std::string IntervalTitle(int interval);

}  // namespace velumar
