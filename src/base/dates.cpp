#include "base/dates.h"

#include <array>
#include <chrono>

#include "base/number_text.h"

namespace velumar {

namespace {

constexpr std::array<std::string_view, 12> kMonths{"January",   "February", "March",    "April",
                                                   "May",       "June",     "July",     "August",
                                                   "September", "October",  "November", "December"};
constexpr std::array<std::string_view, 7> kDays{"Monday", "Tuesday",  "Wednesday", "Thursday",
                                                "Friday", "Saturday", "Sunday"};

std::chrono::year_month_day Calendar(std::int32_t date) {
  return {std::chrono::year(date / 10000),
          std::chrono::month(static_cast<unsigned>(date / 100 % 100)),
          std::chrono::day(static_cast<unsigned>(date % 100))};
}

std::string Padded(int number, std::size_t width) {
  std::string text = std::to_string(number);
  if (text.size() < width) text.insert(0, width - text.size(), '0');
  return text;
}

std::string MonthField(std::int32_t date, std::size_t letters) {
  const int month = date / 100 % 100;
  if (letters < 3 || month < 1 || month > 12) return Padded(month, letters < 2 ? 1 : 2);
  const std::string_view name = kMonths.at(static_cast<std::size_t>(month) - 1);
  return std::string(letters == 3 ? name.substr(0, 3) : name);
}

std::string DayField(std::int32_t date, std::size_t letters) {
  if (letters < 3 || !IsRealDate(date)) return Padded(date % 100, letters < 2 ? 1 : 2);
  const std::string_view name = kDays.at(static_cast<std::size_t>(Weekday(date)));
  return std::string(letters == 3 ? name.substr(0, 3) : name);
}

std::string YearField(std::int32_t date, std::size_t letters) {
  const int year = date / 10000;
  if (letters > 2) return Padded(year, 4);
  return Padded(year % 100, letters);
}

std::string Field(char letter, std::size_t letters, std::int32_t date) {
  if (letter == 'd') return DayField(date, letters);
  return letter == 'M' ? MonthField(date, letters) : YearField(date, letters);
}

bool IsDateLetter(char c) { return c == 'd' || c == 'M' || c == 'y'; }

std::size_t RunLength(std::string_view pattern, std::size_t at) {
  const std::size_t end = pattern.find_first_not_of(pattern[at], at);
  return (end == std::string_view::npos ? pattern.size() : end) - at;
}

// The next digits of the text, at most `most`.
std::optional<int> TakeNumber(std::string_view& text, std::size_t most) {
  const std::size_t start = text.find_first_of("0123456789");
  if (start == std::string_view::npos) return std::nullopt;
  text.remove_prefix(start);
  int value = 0;
  std::size_t taken = 0;
  while (taken < most && taken < text.size() && text[taken] >= '0' && text[taken] <= '9') {
    value = value * 10 + (text[taken++] - '0');
  }
  text.remove_prefix(taken);
  return value;
}

std::optional<int> TakeMonthName(std::string_view& text) {
  for (std::size_t month = 0; month < kMonths.size(); ++month) {
    const std::size_t at = text.find(kMonths[month].substr(0, 3));
    if (at == std::string_view::npos) continue;
    text.remove_prefix(at + 3);
    return static_cast<int>(month) + 1;
  }
  return std::nullopt;
}

constexpr int kPivotYear = 30;

int FullYear(int year) {
  if (year >= 100) return year;
  return year < kPivotYear ? 2000 + year : 1900 + year;
}

}  // namespace

bool IsRealDate(std::int32_t date) {
  return date >= 10000 && date <= 99991231 && Calendar(date).ok();
}

std::optional<std::int32_t> DateFromDigits(std::string_view text) {
  constexpr std::size_t kDigits = 8;
  const auto date = ExactNumber<std::int32_t>(text);
  return text.size() == kDigits && date && IsRealDate(*date) ? date : std::nullopt;
}

std::int64_t DayNumber(std::int32_t date) {
  return std::chrono::sys_days(Calendar(date)).time_since_epoch().count();
}

int Weekday(std::int32_t date) {
  const std::chrono::weekday day{std::chrono::sys_days(Calendar(date))};
  return static_cast<int>(day.iso_encoding()) - 1;
}

std::int32_t DaysLater(std::int32_t date, int days) {
  const std::chrono::year_month_day day(std::chrono::sys_days(Calendar(date)) +
                                        std::chrono::days(days));
  return int{day.year()} * 10000 + static_cast<int>(unsigned{day.month()} * 100) +
         static_cast<int>(unsigned{day.day()});
}

int MinuteOfDay(std::int32_t time) { return time / 10000 * 60 + time / 100 % 100; }

std::string DateText(std::int32_t date, std::string_view pattern) {
  if (date == 0) return "N/A";
  std::string text;
  bool quoted = false;
  for (std::size_t at = 0; at < pattern.size();) {
    if (pattern[at] == '\'') {
      quoted = !quoted;
      ++at;
    } else if (!quoted && IsDateLetter(pattern[at])) {
      const std::size_t letters = RunLength(pattern, at);
      text += Field(pattern[at], letters, date);
      at += letters;
    } else {
      text += pattern[at++];
    }
  }
  return text;
}

std::string IsoDate(std::int32_t date) { return DateText(date, "yyyy-MM-dd"); }

std::string IsoMinuteText(std::string_view moment, std::string_view pattern) {
  constexpr std::size_t kDate = 10;
  constexpr std::size_t kMinutes = 16;
  if (moment.size() < kMinutes) return std::string(moment);
  return IsoDateText(moment.substr(0, kDate), pattern) +
         std::string(moment.substr(kDate, kMinutes - kDate));
}

std::string IsoDateText(std::string_view iso_date, std::string_view pattern) {
  constexpr std::string_view kForm = "0000-00-00";
  if (iso_date.size() != kForm.size()) return std::string(iso_date);
  std::int32_t date = 0;
  for (std::size_t i = 0; i < kForm.size(); ++i) {
    const bool digit = iso_date[i] >= '0' && iso_date[i] <= '9';
    if (kForm[i] == '0' ? !digit : iso_date[i] != kForm[i]) return std::string(iso_date);
    if (digit) date = date * 10 + (iso_date[i] - '0');
  }
  return DateText(date, pattern);
}

std::optional<std::int32_t> DateFromText(std::string_view text, std::string_view pattern) {
  int day = 0;
  int month = 0;
  int year = 0;
  bool quoted = false;
  for (std::size_t at = 0; at < pattern.size();) {
    const std::size_t letters = RunLength(pattern, at);
    const char letter = pattern[at];
    at += letters;
    if (letter == '\'' && letters % 2 == 1) quoted = !quoted;
    if (quoted) continue;
    if (!IsDateLetter(letter) || (letter == 'd' && letters > 2)) continue;
    const bool named = letter == 'M' && letters > 2;
    const std::optional<int> number =
        named ? TakeMonthName(text) : TakeNumber(text, letter == 'y' ? 4 : 2);
    if (!number) return std::nullopt;
    (letter == 'd' ? day : letter == 'M' ? month : year) = *number;
  }
  if (text.find_first_of("0123456789") != std::string_view::npos) return std::nullopt;
  const std::int32_t date = FullYear(year) * 10000 + month * 100 + day;
  if (!IsRealDate(date)) return std::nullopt;
  return date;
}

std::optional<std::int32_t> TypedDate(std::string_view text, std::string_view pattern) {
  if (const auto digits = DateFromDigits(text)) return digits;
  if (const auto iso = DateFromText(text, "yyyy-MM-dd")) return iso;
  return DateFromText(text, pattern);
}

}  // namespace velumar
