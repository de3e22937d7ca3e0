#include "shell/start_days.h"

#include <algorithm>

#include "base/ignoring.h"
#include "marketdata/interval.h"
#include "marketdata/metalib_reader.h"

namespace velumar {

namespace {

constexpr std::ptrdiff_t kHistory = 250;
constexpr std::ptrdiff_t kFuture = 100;

std::int32_t RandomDay(const std::vector<std::int32_t>& days, std::ptrdiff_t first,
                       std::mt19937_64& random) {
  const auto count = static_cast<std::ptrdiff_t>(days.size());
  std::ptrdiff_t low = std::max(first, kHistory);
  std::ptrdiff_t high = count - 1 - kFuture;
  if (low > high) {  // too short for both
    low = std::clamp(count / 2, first, count - 1);
    high = low;
  }
  const std::ptrdiff_t bar = std::uniform_int_distribution<std::ptrdiff_t>(low, high)(random);
  // A run starts with the first bar of a day.
  const std::int32_t day = days[static_cast<std::size_t>(bar)];
  const auto begin = std::lower_bound(days.begin(), days.end(), day);
  if (begin - days.begin() >= low) return day;
  const auto next = std::upper_bound(begin, days.end(), day);
  return next - days.begin() <= high && next != days.end() ? *next : day;
}

}  // namespace

std::vector<std::int32_t> BarDays(const SimSession& session, std::string_view interval,
                                  IndexCache& cache) {
  std::vector<std::int32_t> days;
  IgnoringErrors([&] {
    const auto series = ReplayableInterval(interval);
    if (!series) return;
    MetaLibReader reader(cache);
    reader.OpenDirectory(session.DataDir);
    reader.SelectSeries(session.Symbol, series->daily, series->minutes);
    reader.ReadSeries();
    days = reader.GetDates();
  });
  return days;
}

std::optional<std::int32_t> StartDay(const std::vector<std::int32_t>& days, DayChoice choice,
                                     std::mt19937_64& random) {
  if (days.empty()) return std::nullopt;
  const auto first = std::upper_bound(days.begin(), days.end(), days.front());
  if (first == days.end()) return std::nullopt;
  switch (choice) {
    case DayChoice::kFirst:
      return *first;
    case DayChoice::kLast:
      return days.back();
    case DayChoice::kRandom:
      break;
  }
  return RandomDay(days, first - days.begin(), random);
}

}  // namespace velumar
