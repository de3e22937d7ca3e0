#include "import/moment_reader.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <limits>

#include "base/dates.h"
#include "import/field_text.h"
#include "import/price_reader.h"
#include "marketdata/number_format.h"

namespace velumar {

namespace {

[[noreturn]] void Refuse(std::string_view field, std::string_view reason) {
  if (field.empty()) throw ImportError("is empty");
  throw ImportError("\"" + std::string(field) + "\" " + std::string(reason));
}

// The number of two digits; a large negative one for other characters.
std::int64_t TwoDigits(const char* at) {
  constexpr std::int64_t kNone = -1'000'000'000;
  return IsDigit(at[0]) && IsDigit(at[1]) ? (at[0] - '0') * 10 + (at[1] - '0') : kNone;
}

// The usual dates, yyyymmdd and yyyy-mm-dd; nothing for any other text.
std::optional<std::int32_t> UsualDate(std::string_view text) {
  const bool signs = text.size() == 10 && text[4] == text[7] &&
                     (text[4] == '-' || text[4] == '/' || text[4] == '.');
  if (text.size() != 8 && !signs) return std::nullopt;
  const char* const at = text.data();
  const std::int64_t date = TwoDigits(at) * 1'000'000 + TwoDigits(at + 2) * 10'000 +
                            TwoDigits(at + (signs ? 5 : 4)) * 100 + TwoDigits(at + (signs ? 8 : 6));
  if (date < 0) return std::nullopt;
  return static_cast<std::int32_t>(date);
}

// The usual times before 24:00, hh:mm, hh:mm:ss and hhmmss; nothing for any other text.
std::optional<std::int32_t> UsualTime(std::string_view text) {
  const std::size_t size = text.size();
  const std::size_t sign = size == 6 ? 0 : 1;
  const bool has_signs = sign == 0 || ((size == 5 || size == 8) && text[2] == ':');
  if (!has_signs || (size == 8 && text[5] != ':')) return std::nullopt;
  const char* const at = text.data();
  const std::int64_t hours = TwoDigits(at);
  const std::int64_t minutes = TwoDigits(at + 2 + sign);
  const std::int64_t seconds = size == 5 ? 0 : TwoDigits(at + 4 + 2 * sign);
  const std::int64_t time = hours * 10'000 + minutes * 100 + seconds;
  if (time < 0 || hours > 23 || minutes > 59 || seconds > 59) return std::nullopt;
  return static_cast<std::int32_t>(time);
}

Moment Checked(Moment moment, std::string_view field) {
  if (!IsRealDate(moment.date)) Refuse(field, "is not a valid date");
  if (!IsRealTime(moment.time.value_or(0))) Refuse(field, "is not a valid time");
  MoveMidnight(moment);
  if (!StoredDate(moment.date)) Refuse(field, "can't be stored; market data begins in 1900");
  return moment;
}

std::optional<Moment> MomentOfUnix(std::string_view field, std::int64_t per_second) {
  const auto number = ReadUnixNumber(field);
  if (!number) return std::nullopt;
  std::int64_t seconds = *number / per_second;
  if (*number % per_second < 0) --seconds;
  constexpr std::int64_t kLast = 253402300799;  // the end of the year 9999
  if (seconds > kLast || seconds < -kLast) Refuse(field, "is not a Unix time of this file's unit");
  const std::chrono::sys_seconds moment{std::chrono::seconds(seconds)};
  const auto day = std::chrono::floor<std::chrono::days>(moment);
  const std::chrono::year_month_day date(day);
  const std::chrono::hh_mm_ss time(moment - day);
  return Moment{
      .date = int{date.year()} * 10'000 + static_cast<int>(unsigned{date.month()}) * 100 +
              static_cast<int>(unsigned{date.day()}),
      .time = static_cast<std::int32_t>(time.hours().count() * 10'000 +
                                        time.minutes().count() * 100 + time.seconds().count()),
      .utc_offset = 0};
}

Moment MomentOfPattern(std::string_view field, const DatePattern& pattern) {
  const auto match = pattern.Read(field);
  if (!match) Refuse(field, "is not a date; the date format is \"" + pattern.Text() + "\"");
  Moment moment{.date = match->date, .time = match->time};
  if (match->rest.empty()) return moment;
  const bool separated = match->rest.starts_with(' ') || match->rest.starts_with('T');
  const auto time = separated && !moment.time ? ReadTimeText(Stripped(match->rest.substr(1)),
                                                             TimeDigits::kHoursAndMinutes)
                                              : std::nullopt;
  if (!time) Refuse(field, "is not a date; \"" + std::string(match->rest) + "\" is unexpected");
  moment.time = time->time;
  moment.utc_offset = time->utc_offset;
  moment.zone = time->zone;
  return moment;
}

}  // namespace

void MoveMidnight(Moment& moment) {
  if (moment.time != kEndOfDay) return;
  moment.time = 0;
  moment.date = DaysLater(moment.date, 1);
}

Moment MomentReader::Date(std::string_view field) {
  if (IsLast(field)) return {.date = last_date_};
  const auto moment = ReadDate(field);
  if (!moment) Refuse(field, "is not a date");
  Moment checked = *moment;
  if (style_.ends_of_days && checked.time == kEndOfDay) checked.time = 0;
  checked = Checked(checked, field);
  if (!checked.time && field.size() <= last_text_.size()) {
    std::ranges::copy(field, last_text_.begin());
    last_size_ = field.size();
    last_date_ = checked.date;
  }
  return checked;
}

bool MomentReader::TakeNext(std::string_view date, std::string_view time, Bar& bar) const {
  const auto usual = UsualTime(time);
  if (!usual || !IsLast(date)) return false;
  bar.date = last_date_;
  bar.time = *usual;
  return true;
}

bool MomentReader::IsLast(std::string_view date) const {
  return last_size_ > 0 && date.size() == last_size_ &&
         std::memcmp(date.data(), last_text_.data(), last_size_) == 0;
}

Moment MomentReader::Time(std::string_view field) {
  if (const auto usual = UsualTime(field)) return {.time = usual};
  auto moment = ReadTimeText(field, digits_);
  if (!moment) {
    moment = ReadDateText(field, style_.order);
    if (!moment || !moment->time) Refuse(field, "is not a time");
  }
  if (!IsRealTime(*moment->time)) Refuse(field, "is not a valid time");
  return *moment;
}

std::optional<Moment> MomentReader::ReadDate(std::string_view field) {
  switch (style_.kind) {
    case DateStyle::Kind::kUnix:
      return MomentOfUnix(field, style_.per_second);
    case DateStyle::Kind::kPattern:
      return MomentOfPattern(field, *style_.pattern);
    case DateStyle::Kind::kSixDigits: {
      const auto date = ReadSixDigits(field);
      return date ? std::optional(Moment{.date = *date}) : std::nullopt;
    }
    case DateStyle::Kind::kText:
      break;
  }
  const std::size_t end = std::min(field.find_first_of(" T"), field.size());
  if (const auto date = UsualDate(field.substr(0, end))) {
    if (end == field.size()) return Moment{.date = *date};
    const auto time = UsualTime(field.substr(end + 1));
    if (time) return Moment{.date = *date, .time = time};
  }
  return ReadDateText(field, style_.order);
}

}  // namespace velumar
