#include "import/zone_times.h"

#include <date/tz.h>

#include <chrono>
#include <exception>
#include <string>

#include "base/dates.h"
#include "import/price_reader.h"
#include "import/time_zones.h"

// The only file that needs the time zone database. GCC 12 has no std::chrono zones.

namespace velumar {

namespace {

using std::chrono::seconds;

const date::time_zone* ZoneOf(const std::string& name) {
  try {
    PrepareTimeZones();
    return date::locate_zone(name);
  } catch (const std::exception&) {
    throw ImportError("the time zone \"" + name +
                      "\" is unknown; zones are named as in \"Europe/Berlin\"");
  }
}

date::local_seconds LocalOf(const Bar& bar) {
  return date::local_days(date::days(DayNumber(bar.date))) +
         seconds(MinuteOfDay(bar.time) * 60 + bar.time % 100);
}

void SetLocal(Bar& bar, date::local_seconds local) {
  const auto day = date::floor<date::days>(local);
  const date::year_month_day ymd(day);
  const date::hh_mm_ss<seconds> time(local - day);
  bar.date = static_cast<int>(ymd.year()) * 10000 + static_cast<int>(unsigned{ymd.month()}) * 100 +
             static_cast<int>(unsigned{ymd.day()});
  bar.time = static_cast<std::int32_t>(time.hours().count() * 10000 + time.minutes().count() * 100 +
                                       time.seconds().count());
}

}  // namespace

struct ZoneTimes::State {
  // Between two changes of a clock. Looking one up for each bar would take most of an import's
  // time.
  struct Period {
    date::sys_seconds begin;
    date::sys_seconds end;
    seconds offset{0};
  };

  const date::time_zone* from = nullptr;
  const date::time_zone* to = nullptr;  // null for UTC
  bool newest_first = false;
  bool skipped = false;  // the last local time
  Period from_period;
  Period to_period;
  // Of the newest local time that occurs twice.
  date::sys_seconds change;
  date::local_seconds last_twice;
  bool in_later_hour = false;

  date::sys_seconds UtcOf(date::local_seconds local);
  date::sys_seconds UtcOfUnusual(date::local_seconds local, const date::local_info& info);
  date::local_seconds LocalIn(date::sys_seconds utc);
};

ZoneTimes::ZoneTimes(const ImportOptions& options, bool newest_first)
    : state_(std::make_unique<State>()) {
  state_->newest_first = newest_first;
  if (options.from_zone) state_->from = ZoneOf(*options.from_zone);
  if (options.to_zone) state_->to = ZoneOf(*options.to_zone);
}

ZoneTimes::~ZoneTimes() = default;

bool ZoneTimes::Wanted(const ImportOptions& options) {
  return options.utc || options.from_zone || options.to_zone;
}

bool ZoneTimes::Convert(Bar& bar, std::optional<int> utc_offset) {
  const date::local_seconds local = LocalOf(bar);
  if (!utc_offset && state_->from == nullptr) {
    throw ImportError("the time has no offset from UTC; set --from-zone");
  }
  state_->skipped = false;
  const date::sys_seconds utc =
      utc_offset ? date::sys_seconds(local.time_since_epoch()) - std::chrono::minutes(*utc_offset)
                 : state_->UtcOf(local);
  SetLocal(bar, state_->LocalIn(utc));
  return !state_->skipped;
}

date::sys_seconds ZoneTimes::State::UtcOf(date::local_seconds local) {
  const date::sys_seconds same_digits(local.time_since_epoch());
  // A day is more than any clock is moved.
  constexpr date::days kMargin(1);
  if (same_digits < from_period.begin + kMargin || same_digits >= from_period.end - kMargin) {
    const date::local_info info = from->get_info(local);
    if (info.result != date::local_info::unique) return UtcOfUnusual(local, info);
    // The first and last periods of a zone end where a day more would not fit the number.
    constexpr date::sys_days kFirst = date::sys_days(date::year(1800) / 1 / 1);
    constexpr date::sys_days kLast = date::sys_days(date::year(9999) / 12 / 31);
    from_period = {.begin = std::max<date::sys_seconds>(info.first.begin, kFirst),
                   .end = std::min<date::sys_seconds>(info.first.end, kLast),
                   .offset = info.first.offset};
  }
  return same_digits - from_period.offset;
}

date::sys_seconds ZoneTimes::State::UtcOfUnusual(date::local_seconds local,
                                                 const date::local_info& info) {
  const date::sys_seconds same_digits(local.time_since_epoch());
  if (info.result == date::local_info::nonexistent) {
    skipped = true;
    return same_digits - info.first.offset;
  }
  if (change != info.first.end) {
    in_later_hour = newest_first;
  } else if (newest_first ? local >= last_twice : local <= last_twice) {
    in_later_hour = !newest_first;
  }
  change = info.first.end;
  last_twice = local;
  return same_digits - (in_later_hour ? info.second.offset : info.first.offset);
}

date::local_seconds ZoneTimes::State::LocalIn(date::sys_seconds utc) {
  if (to != nullptr && (utc < to_period.begin || utc >= to_period.end)) {
    const date::sys_info info = to->get_info(utc);
    to_period = {.begin = info.begin, .end = info.end, .offset = info.offset};
  }
  return date::local_seconds(utc.time_since_epoch() + to_period.offset);
}

}  // namespace velumar
