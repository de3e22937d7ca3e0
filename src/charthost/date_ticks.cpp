#include "charthost/date_ticks.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <optional>

#include "charthost/date_text.h"

namespace velumar {
namespace {

enum class Unit { kYear, kMonth, kWeek, kDay, kMinute };

struct Step {
  Unit unit;
  int count;
};

constexpr std::array kSteps = {
    Step{Unit::kYear, 100},   Step{Unit::kYear, 50},    Step{Unit::kYear, 20},
    Step{Unit::kYear, 10},    Step{Unit::kYear, 5},     Step{Unit::kYear, 2},
    Step{Unit::kYear, 1},     Step{Unit::kMonth, 6},    Step{Unit::kMonth, 3},
    Step{Unit::kMonth, 1},    Step{Unit::kWeek, 1},     Step{Unit::kDay, 1},
    Step{Unit::kMinute, 360}, Step{Unit::kMinute, 180}, Step{Unit::kMinute, 60},
    Step{Unit::kMinute, 30},  Step{Unit::kMinute, 15},  Step{Unit::kMinute, 5},
    Step{Unit::kMinute, 1}};

// A step fits when no more of its marks than this have to go for lack of room.
constexpr double kLeastShareApart = 0.7;

// Two bars lie in the same period of the step exactly if their keys are equal.
std::int64_t PeriodKey(const Step& step, std::int32_t date, std::int32_t time) {
  const CalendarDate day = SplitDate(date);
  switch (step.unit) {
    case Unit::kYear:
      return day.year / step.count;
    case Unit::kMonth:
      return day.year * 12 + (day.month - 1) / step.count;
    case Unit::kWeek:
      return (DayNumber(day) + 3) / 7;  // weeks begin on Mondays
    case Unit::kDay:
      return date;
    case Unit::kMinute:
      return std::int64_t{date} * 1440 + (time / 10000 * 60 + time / 100 % 100) / step.count;
  }
  return 0;
}

// Bars that begin a period of the step, the series' first bar included; nothing when more than
// `limit` do.
std::optional<std::vector<int>> PeriodStarts(const BarSeries& series, const AxisStretch& stretch,
                                             const Step& step, std::size_t limit) {
  std::vector<int> starts;
  const int first = stretch.first_bar;
  std::int64_t previous =
      first > 0 ? PeriodKey(step, series.dates[first - 1], series.times[first - 1]) : -1;
  for (int i = first; i <= stretch.last_bar; ++i) {
    const std::int64_t key = PeriodKey(step, series.dates[i], series.times[i]);
    if (key != previous) {
      if (starts.size() == limit) return std::nullopt;
      starts.push_back(i);
    }
    previous = key;
  }
  return starts;
}

// How large a turn of the calendar the bar begins: 3 a year, 2 a month, 1 a day.
int CalendarTurn(std::int32_t before, std::int32_t date) {
  const CalendarDate a = SplitDate(before);
  const CalendarDate b = SplitDate(date);
  if (a.year != b.year) return 3;
  if (a.month != b.month) return 2;
  return a.day != b.day ? 1 : 0;
}

int TurnAt(const BarSeries& series, int bar) {
  return bar == 0 ? 0 : CalendarTurn(series.dates[bar - 1], series.dates[bar]);
}

// Where marks come too close, that of the larger turn stays.
std::vector<int> WithoutCollisions(const BarSeries& series, std::vector<int> bars,
                                   double min_bars) {
  std::stable_sort(bars.begin(), bars.end(),
                   [&](int a, int b) { return TurnAt(series, a) > TurnAt(series, b); });
  std::vector<int> kept;
  for (const int bar : bars) {
    const bool free = std::none_of(kept.begin(), kept.end(),
                                   [&](int other) { return std::abs(bar - other) < min_bars; });
    if (free) kept.push_back(bar);
  }
  std::sort(kept.begin(), kept.end());
  return kept;
}

std::string WholeText(Unit unit, std::int32_t date, std::int32_t time) {
  const CalendarDate day = SplitDate(date);
  switch (unit) {
    case Unit::kYear:
      return std::to_string(day.year);
    case Unit::kMonth:
      return MonthText(day.month) + " " + std::to_string(day.year);
    case Unit::kWeek:
    case Unit::kDay:
      return DayText(date);
    case Unit::kMinute:
      return std::to_string(day.day) + " " + MonthText(day.month) + " " + TimeText(time);
  }
  return {};
}

// Only what has changed since the mark before.
std::string ShortText(Unit unit, std::int32_t before, std::int32_t date, std::int32_t time) {
  const CalendarDate day = SplitDate(date);
  const int turn = CalendarTurn(before, date);
  if (unit == Unit::kYear || (turn == 3 && unit != Unit::kMinute)) return std::to_string(day.year);
  if (unit == Unit::kMonth) return MonthText(day.month);
  if (unit == Unit::kMinute) {
    if (turn == 3) return DayText(date);
    return turn == 0 ? TimeText(time) : std::to_string(day.day) + " " + MonthText(day.month);
  }
  return turn == 2 ? MonthText(day.month) : std::to_string(day.day);
}

bool IsStrong(Unit unit, int turn) {
  if (unit == Unit::kYear) return false;
  if (unit == Unit::kMinute) return turn > 0;
  return unit == Unit::kMonth ? turn == 3 : turn >= 2;
}

// The mark that tells the whole date: the first with room for it on both sides, unless a new year,
// or among times a new day, has been told by then.
std::size_t WholeMark(const BarSeries& series, const std::vector<int>& bars, Unit unit,
                      int first_bar, double min_bars) {
  const int telling_turn = unit == Unit::kMinute ? 1 : 3;
  for (std::size_t i = 0; i < bars.size(); ++i) {
    if (TurnAt(series, bars[i]) >= telling_turn) break;
    const bool room_before = bars[i] - first_bar >= 0.8 * min_bars;
    const bool room_behind = i + 1 == bars.size() || bars[i + 1] - bars[i] >= 1.4 * min_bars;
    if (room_before && room_behind) return i;
  }
  return bars.size();
}

std::vector<DateTick> Labelled(const BarSeries& series, const std::vector<int>& bars, Unit unit,
                               std::size_t whole_mark) {
  std::vector<DateTick> ticks;
  for (std::size_t i = 0; i < bars.size(); ++i) {
    const std::int32_t date = series.dates[bars[i]];
    const std::int32_t time = series.times[bars[i]];
    const std::int32_t before = series.dates[i > 0 ? bars[i - 1] : std::max(0, bars[i] - 1)];
    const bool strong = IsStrong(unit, CalendarTurn(before, date));
    ticks.push_back(
        {bars[i],
         i == whole_mark ? WholeText(unit, date, time) : ShortText(unit, before, date, time),
         strong});
  }
  return ticks;
}

}  // namespace

std::vector<DateTick> DateTicks(const BarSeries& series, const AxisStretch& stretch,
                                double min_pixels) {
  if (stretch.first_bar > stretch.last_bar) return {};
  const double min_bars = min_pixels / stretch.pixels_per_bar;
  const int shown = stretch.last_bar - stretch.first_bar + 1;
  const auto limit = static_cast<std::size_t>(shown / min_bars) + 2;
  std::vector<int> best;
  Unit unit = Unit::kYear;
  for (const Step& step : kSteps) {
    if (step.unit == Unit::kMinute && !series.has_times) break;
    const auto starts = PeriodStarts(series, stretch, step, limit);
    if (!starts) break;
    std::vector<int> apart = WithoutCollisions(series, *starts, min_bars);
    if (static_cast<double>(apart.size()) <
        kLeastShareApart * static_cast<double>(starts->size())) {
      break;
    }
    if (apart.size() > best.size()) {
      best = std::move(apart);
      unit = step.unit;
    }
  }
  return Labelled(series, best, unit, WholeMark(series, best, unit, stretch.first_bar, min_bars));
}

}  // namespace velumar
