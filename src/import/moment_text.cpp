#include "import/moment_text.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "base/number_text.h"
#include "base/text.h"
#include "import/field_text.h"

namespace velumar {

namespace {

// Takes a text apart from its start.
class Cursor {
 public:
  explicit Cursor(std::string_view text) : rest_(text) {}

  std::string_view Rest() const { return rest_; }
  bool AtEnd() const { return rest_.empty(); }
  bool AtDigit() const { return !rest_.empty() && IsDigit(rest_.front()); }
  bool AtLetter() const { return !rest_.empty() && IsLetter(rest_.front()); }

  std::string_view TakeDigits() { return TakeWhile(IsDigit); }
  std::string_view TakeWord() { return TakeWhile(IsLetter); }
  // Any number of the characters; returns the first one or 0.
  char TakeAny(std::string_view characters) {
    const char first = rest_.empty() ? '\0' : rest_.front();
    const std::size_t end = std::min(rest_.find_first_not_of(characters), rest_.size());
    rest_.remove_prefix(end);
    return end == 0 ? '\0' : first;
  }
  bool Take(std::string_view start) {
    if (!rest_.starts_with(start)) return false;
    rest_.remove_prefix(start.size());
    return true;
  }

 private:
  template <typename Is>
  std::string_view TakeWhile(Is is) {
    const auto end = std::find_if_not(rest_.begin(), rest_.end(), is);
    const std::string_view taken(rest_.data(), static_cast<std::size_t>(end - rest_.begin()));
    rest_.remove_prefix(taken.size());
    return taken;
  }

  std::string_view rest_;
};

int Value(std::string_view digits) {
  int value = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), value);
  return value;
}

// The place of the name that the word, of at least three letters, abbreviates; from 1, 0 for none.
template <std::size_t kSize>
int PlaceOfName(std::string_view word, const std::array<std::string_view, kSize>& names) {
  if (word.size() < 3) return 0;
  const std::string upper = UpperCased(word);
  const auto found =
      std::ranges::find_if(names, [&](std::string_view name) { return name.starts_with(upper); });
  return found == names.end() ? 0 : static_cast<int>(found - names.begin()) + 1;
}

int MonthOfName(std::string_view word) {
  static constexpr std::array<std::string_view, 13> kMonths = {
      "JANUARY", "FEBRUARY",  "MARCH",   "APRIL",    "MAY",      "JUNE", "JULY",
      "AUGUST",  "SEPTEMBER", "OCTOBER", "NOVEMBER", "DECEMBER", "SEPT"};
  return PlaceOfName(word, kMonths);
}

bool IsWeekday(std::string_view word) {
  static constexpr std::array<std::string_view, 7> kDays = {
      "MONDAY", "TUESDAY", "WEDNESDAY", "THURSDAY", "FRIDAY", "SATURDAY", "SUNDAY"};
  return PlaceOfName(word, kDays) != 0;
}

int FullYear(std::string_view digits) {
  constexpr int kPivot = 69;
  const int year = Value(digits);
  if (digits.size() > 2) return year;
  return year < kPivot ? 2000 + year : 1900 + year;
}

std::int32_t DateOf(int year, int month, int day) { return year * 10000 + month * 100 + day; }

bool IsYear(std::string_view digits) { return digits.size() == 4; }
bool IsShort(std::string_view digits) { return digits.size() == 1 || digits.size() == 2; }

// "Jan 2, 2020", after the name of the month.
std::optional<std::int32_t> DateAfterMonth(Cursor& cursor, int month) {
  cursor.TakeAny(" .-/,");
  const std::string_view day = cursor.TakeDigits();
  if (cursor.AtLetter()) {
    const std::string ending = UpperCased(cursor.TakeWord());
    if (ending != "ST" && ending != "ND" && ending != "RD" && ending != "TH") return std::nullopt;
  }
  if (cursor.TakeAny(" .-/,") == '\0') return std::nullopt;
  const std::string_view year = cursor.TakeDigits();
  if (!IsShort(day) || (!IsYear(year) && year.size() != 2)) return std::nullopt;
  return DateOf(FullYear(year), month, Value(day));
}

// "02-Jan-2020" or "2020 Jan 2", after the first number.
std::optional<std::int32_t> DateAroundMonth(Cursor& cursor, std::string_view first) {
  const int month = MonthOfName(cursor.TakeWord());
  if (month == 0) return std::nullopt;
  cursor.TakeAny(" .-/,");
  const std::string_view last = cursor.TakeDigits();
  if (IsYear(first) && IsShort(last)) return DateOf(FullYear(first), month, Value(last));
  if (!IsShort(first) || (!IsYear(last) && last.size() != 2)) return std::nullopt;
  return DateOf(FullYear(last), month, Value(first));
}

struct ThreeNumbers {
  std::array<std::string_view, 3> digits;
};

// Numbers with the same sign between them, after the first one and its sign.
std::optional<ThreeNumbers> TakeNumbers(Cursor& cursor, std::string_view first, char sign) {
  ThreeNumbers numbers{{first, cursor.TakeDigits(), {}}};
  if (sign == ' ' || cursor.TakeAny({&sign, 1}) == '\0') return std::nullopt;
  numbers.digits[2] = cursor.TakeDigits();
  if (!IsShort(numbers.digits[1])) return std::nullopt;
  const bool year_first = IsYear(first) && IsShort(numbers.digits[2]);
  const bool year_last =
      IsShort(first) && (IsYear(numbers.digits[2]) || IsShort(numbers.digits[2]));
  if (!year_first && !year_last) return std::nullopt;
  return numbers;
}

std::optional<std::int32_t> DateOfNumbers(const ThreeNumbers& numbers, DateOrder order) {
  const auto& [first, second, third] = numbers.digits;
  if (IsYear(first) || (order == DateOrder::kYearMonthDay && !IsYear(third))) {
    return DateOf(FullYear(first), Value(second), Value(third));
  }
  if (third.size() == 1) return std::nullopt;
  const bool month_first = order == DateOrder::kMonthDayYear;
  return DateOf(FullYear(third), Value(month_first ? first : second),
                Value(month_first ? second : first));
}

void SkipWeekday(Cursor& cursor) {
  Cursor ahead = cursor;
  if (!ahead.AtLetter() || !IsWeekday(ahead.TakeWord())) return;
  ahead.TakeAny(" .,");
  cursor = ahead;
}

// Only digits: yyyymmdd, with hhmm, hhmmss or hhmmss and thousandths.
std::optional<Moment> MomentOfDigits(std::string_view digits) {
  const std::size_t size = digits.size();
  if (size != 8 && size != 12 && size != 14 && size != 17) return std::nullopt;
  Moment moment{.date = Value(digits.substr(0, 8))};
  if (size == 12) moment.time = Value(digits.substr(8)) * 100;
  if (size > 12) moment.time = Value(digits.substr(8, 6));
  return moment;
}

std::optional<std::int32_t> TakeDate(Cursor& cursor, DateOrder order) {
  SkipWeekday(cursor);
  if (cursor.AtLetter()) {
    const int month = MonthOfName(cursor.TakeWord());
    return month == 0 ? std::nullopt : DateAfterMonth(cursor, month);
  }
  const std::string_view first = cursor.TakeDigits();
  if (first.size() == 8 &&
      (cursor.AtEnd() || !IsLetter(cursor.Rest().front()) || cursor.Rest().front() == 'T')) {
    return Value(first);
  }
  const char sign = cursor.TakeAny(" ./-");
  if (first.empty()) return std::nullopt;
  if (cursor.AtLetter()) return DateAroundMonth(cursor, first);
  const auto numbers = TakeNumbers(cursor, first, sign);
  return numbers ? DateOfNumbers(*numbers, order) : std::nullopt;
}

// The digits of a time without colons.
std::optional<std::int32_t> TimeOfDigits(std::string_view digits, TimeDigits meaning) {
  if (digits.empty() || digits.size() > 9 || digits.size() == 7 || digits.size() == 8) {
    return std::nullopt;
  }
  if (digits.size() == 9) return Value(digits.substr(0, 6));
  const bool with_seconds = digits.size() > 4 || meaning == TimeDigits::kWithSeconds;
  return with_seconds ? Value(digits) : Value(digits) * 100;
}

bool TakeHalf(Cursor& cursor, std::int32_t& time) {
  Cursor ahead = cursor;
  ahead.TakeAny(" ");
  std::string half = UpperCased(ahead.Rest().substr(0, 4));
  std::erase(half, '.');
  if (half == "A" || half == "P") half += 'M';
  if (half.size() > 2) half.resize(2);
  if (half != "AM" && half != "PM") return true;
  const std::size_t letters = ahead.TakeWord().size();
  if (letters > 2) return true;  // a name of a zone
  if (letters == 1 && ahead.Take(".")) {
    ahead.TakeWord();
    ahead.Take(".");
  }
  const int hour = time / 10000;
  if (hour < 1 || hour > 12) return false;
  time += (half == "PM" ? (hour == 12 ? 0 : 12) : (hour == 12 ? -12 : 0)) * 10000;
  cursor = ahead;
  return true;
}

// "+2", "+02", "+0200", "+02:00" in minutes.
std::optional<int> TakeOffset(Cursor& cursor) {
  const bool west = cursor.Rest().starts_with('-');
  if (!west && !cursor.Rest().starts_with('+')) return std::nullopt;
  Cursor ahead(cursor.Rest().substr(1));
  const std::string_view digits = ahead.TakeDigits();
  int minutes =
      IsShort(digits) ? Value(digits) * 60 : Value(digits) / 100 * 60 + Value(digits) % 100;
  if (!IsShort(digits) && digits.size() != 4) return std::nullopt;
  if (IsShort(digits) && ahead.Take(":")) {
    const std::string_view rest = ahead.TakeDigits();
    if (rest.size() != 2) return std::nullopt;
    minutes += Value(rest);
  }
  constexpr int kMost = 14 * 60;
  if (minutes > kMost) return std::nullopt;
  cursor = ahead;
  return west ? -minutes : minutes;
}

// What follows a time: nothing, an offset, the name of a zone.
bool TakeZone(Cursor& cursor, Moment& moment) {
  cursor.TakeAny(" ");
  if (cursor.AtEnd()) return true;
  moment.zone = cursor.Rest();
  const bool utc = cursor.Take("Z") || cursor.Take("UTC") || cursor.Take("GMT");
  moment.utc_offset = TakeOffset(cursor);
  if (utc && !moment.utc_offset) moment.utc_offset = 0;
  if (cursor.AtEnd()) return true;
  // "EST", "[Europe/Berlin]" or "(Central European Time)": a name, not an offset.
  return std::ranges::all_of(cursor.Rest(),
                             [](char c) {
                               return IsLetter(c) ||
                                      std::string_view(" ()[]/_").find(c) != std::string_view::npos;
                             }) &&
         (moment.utc_offset.has_value() || cursor.AtLetter());
}

std::optional<Moment> TakeTime(Cursor& cursor, TimeDigits meaning) {
  const std::string_view first = cursor.TakeDigits();
  std::int32_t time = 0;
  if (cursor.Take(":") || cursor.Take("h")) {
    const std::string_view minutes = cursor.TakeDigits();
    if (!IsShort(first) || minutes.size() != 2) return std::nullopt;
    time = Value(first) * 10000 + Value(minutes) * 100;
    if (cursor.Take(":")) {
      const std::string_view seconds = cursor.TakeDigits();
      if (seconds.size() != 2) return std::nullopt;
      time += Value(seconds);
      if ((cursor.Take(".") || cursor.Take(",")) && cursor.TakeDigits().empty()) {
        return std::nullopt;
      }
    }
  } else if (const auto digits = TimeOfDigits(first, meaning)) {
    const bool has_fraction = first.size() == 6 && cursor.Take(".");
    if (has_fraction && cursor.TakeDigits().empty()) return std::nullopt;
    Cursor ahead = cursor;
    ahead.TakeAny(" ");
    const std::string half = UpperCased(ahead.Rest().substr(0, 2));
    const bool hours_only = IsShort(first) && (half == "AM" || half == "PM");
    time = hours_only ? Value(first) * 10000 : *digits;
  } else {
    return std::nullopt;
  }
  Moment moment;
  if (!TakeHalf(cursor, time) || !TakeZone(cursor, moment)) return std::nullopt;
  moment.time = time;
  return moment;
}

}  // namespace

std::optional<Moment> ReadDateText(std::string_view text, DateOrder order) {
  if (std::ranges::all_of(text, IsDigit)) return MomentOfDigits(text);
  Cursor cursor(text);
  const auto date = TakeDate(cursor, order);
  if (!date) return std::nullopt;
  if (cursor.AtEnd() || cursor.Rest() == ".") return Moment{.date = *date};
  if (!cursor.Take("T") && cursor.TakeAny(" ,_") == '\0') return std::nullopt;
  if (IsShort(cursor.Rest())) return std::nullopt;
  auto moment = TakeTime(cursor, TimeDigits::kHoursAndMinutes);
  if (moment) moment->date = *date;
  return moment;
}

std::optional<Moment> ReadTimeText(std::string_view text, TimeDigits digits) {
  Cursor cursor(text);
  cursor.Take("T");
  return TakeTime(cursor, digits);
}

bool IsRealTime(std::int32_t time) {
  return time == kEndOfDay || (time / 10000 < 24 && time / 100 % 100 < 60 && time % 100 < 60);
}

std::optional<std::int64_t> ReadUnixNumber(std::string_view text) {
  const std::size_t point = text.find('.');
  if (point != std::string_view::npos) {
    if (!std::ranges::all_of(text.substr(point + 1), IsDigit)) return std::nullopt;
    text = text.substr(0, point);
  }
  return ExactNumber<std::int64_t>(text);
}

std::optional<OrderlessDate> ReadOrderlessDate(std::string_view text) {
  Cursor cursor(text);
  SkipWeekday(cursor);
  const std::string_view first = cursor.TakeDigits();
  if (!IsShort(first)) return std::nullopt;
  const char sign = cursor.TakeAny("./-");
  const auto numbers = sign == '\0' ? std::nullopt : TakeNumbers(cursor, first, sign);
  if (!numbers) return std::nullopt;
  const auto& [one, two, three] = numbers->digits;
  return OrderlessDate{Value(one), Value(two), IsYear(three), sign == '.'};
}

std::optional<std::int32_t> ReadSixDigits(std::string_view text) {
  if (text.size() != 6 || !std::ranges::all_of(text, IsDigit)) return std::nullopt;
  return DateOf(FullYear(text.substr(0, 2)), Value(text.substr(2, 2)), Value(text.substr(4)));
}

}  // namespace velumar
