#include "charthost/date_ticks.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <optional>

#include "base/dates.h"
#include "charthost/bar_text.h"

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

// A step fits if at least this share of its marks has room.
constexpr double kLeastShareApart = 0.7;

int Year(std::int32_t date) { return date / 10000; }
int Month(std::int32_t date) { return date / 100 % 100; }

// Two bars are in the same period of the step if and only if their keys are equal.
std::int64_t PeriodKey(const Step& step, std::int32_t date, std::int32_t time) {
  switch (step.unit) {
    case Unit::kYear:
      return Year(date) / step.count;
    case Unit::kMonth:
      return Year(date) * 12 + (Month(date) - 1) / step.count;
    case Unit::kWeek:
      return (DayNumber(date) + 3) / 7;  // weeks begin on Mondays
    case Unit::kDay:
      return date;
    case Unit::kMinute:
      return std::int64_t{date} * 1440 + MinuteOfDay(time) / step.count;
  }
  return 0;
}

// Bars that begin a period of the step, the first bar of the series included; nothing if more than
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

// What is new on `date`: 3 the year, 2 the month, 1 the day, 0 none.
int CalendarTurn(std::int32_t before, std::int32_t date) {
  if (Year(before) != Year(date)) return 3;
  if (Month(before) != Month(date)) return 2;
  return before != date ? 1 : 0;
}

int TurnAt(const BarSeries& series, int bar) {
  return bar == 0 ? 0 : CalendarTurn(series.dates[bar - 1], series.dates[bar]);
}

// Where two marks are too close, the one that begins the longer period stays.
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
  if (unit == Unit::kYear) return DateText(date, "yyyy");
  if (unit == Unit::kMonth) return DateText(date, "MMM yyyy");
  if (unit == Unit::kMinute) return DateText(date, "d MMM") + " " + TimeText(time);
  return DayText(date);
}

// Only what has changed since the previous mark.
std::string ShortText(Unit unit, int turn, std::int32_t date, std::int32_t time) {
  if (unit == Unit::kMinute) {
    if (turn == 0) return TimeText(time);
    return turn == 3 ? DayText(date) : DateText(date, "d MMM");
  }
  if (unit == Unit::kYear || turn == 3) return DateText(date, "yyyy");
  return DateText(date, unit == Unit::kMonth || turn == 2 ? "MMM" : "d");
}

bool IsStrong(Unit unit, int turn) {
  if (unit == Unit::kYear) return false;
  if (unit == Unit::kMinute) return turn > 0;
  return unit == Unit::kMonth ? turn == 3 : turn >= 2;
}

// The mark that shows the full date: the first with room on both sides, unless a mark before it
// shows a new year or, among times, a new day. The number of marks if there is none.
std::size_t WholeMark(const BarSeries& series, const std::vector<int>& bars, Unit unit,
                      int first_bar, double min_bars) {
  const int complete_turn = unit == Unit::kMinute ? 1 : 3;
  for (std::size_t i = 0; i < bars.size(); ++i) {
    if (TurnAt(series, bars[i]) >= complete_turn) break;
    const bool room_before = bars[i] - first_bar >= 0.8 * min_bars;
    const bool room_after = i + 1 == bars.size() || bars[i + 1] - bars[i] >= 1.4 * min_bars;
    if (room_before && room_after) return i;
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
    const int turn = CalendarTurn(before, date);
    ticks.push_back(
        {bars[i], i == whole_mark ? WholeText(unit, date, time) : ShortText(unit, turn, date, time),
         IsStrong(unit, turn)});
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
