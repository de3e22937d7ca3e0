#include "shell/start_days.h"

#include <algorithm>

#include "base/ignoring.h"
#include "marketdata/interval.h"
#include "marketdata/metalib_reader.h"
#include "session/blind_draw.h"

namespace velumar {

namespace {

std::int32_t RandomDay(const std::vector<std::int32_t>& days, std::ptrdiff_t first,
                       std::mt19937_64& random) {
  if (const auto day = RandomStartDay(days, random)) return *day;
  return days[static_cast<std::size_t>(
      std::clamp(std::ssize(days) / 2, first, std::ssize(days) - 1))];
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
