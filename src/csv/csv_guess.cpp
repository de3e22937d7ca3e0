#include "csv/csv_guess.h"

#include <algorithm>
#include <map>

#include "base/dates.h"
#include "base/text.h"
#include "csv/csv_text.h"
#include "marketdata/interval.h"

namespace velumar {

namespace {

constexpr std::string_view kSetIt = "; set the interval";

int SecondOfDay(std::int32_t time) { return MinuteOfDay(time) * 60 + time % 100; }

// How often bars of one day are how many seconds apart.
std::map<int, int> GapsWithinDays(const std::vector<Bar>& bars) {
  std::map<int, int> gaps;
  for (std::size_t i = 1; i < bars.size(); ++i) {
    if (bars[i].date != bars[i - 1].date) continue;
    ++gaps[SecondOfDay(bars[i].time) - SecondOfDay(bars[i - 1].time)];
  }
  return gaps;
}

// One bar a day, always at the same time. A single bar with a time can have any interval.
bool LookDaily(const std::vector<Bar>& bars) {
  const auto same_time = [&](const Bar& bar) { return bar.time == bars.front().time; };
  return std::ranges::all_of(bars, same_time) && (bars.size() > 1 || bars.front().time == 0);
}

std::optional<int> IntervalOfBars(const std::vector<Bar>& bars) {
  const std::map<int, int> gaps = GapsWithinDays(bars);
  if (gaps.empty()) return LookDaily(bars) ? std::optional(kDaily) : std::nullopt;
  const auto [seconds, count] = *std::ranges::max_element(
      gaps, {}, [](const auto& gap) { return std::pair(gap.second, -gap.first); });
  return seconds / 60;
}

// A thin market may have no bars for most of the time, so wider gaps than the name's are normal.
bool Agree(int from_name, int from_bars) {
  return from_name == kDaily ? from_bars == kDaily : from_bars >= from_name;
}

}  // namespace

CsvNameGuess GuessFromName(std::string_view stem) {
  const auto line = stem.rfind('_');
  if (line != std::string_view::npos && line > 0) {
    const std::optional<int> interval = IntervalFromText(stem.substr(line + 1));
    if (interval && IsReplayInterval(*interval)) {
      return {NormalisedSymbol(stem.substr(0, line)), interval};
    }
  }
  return {NormalisedSymbol(stem), std::nullopt};
}

int GuessInterval(const std::vector<Bar>& bars, std::optional<int> from_name) {
  const std::optional<int> from_bars = IntervalOfBars(bars);
  if (from_name && (!from_bars || Agree(*from_name, *from_bars))) return *from_name;
  if (!from_bars) {
    throw CsvError("the bars do not show their interval" + std::string(kSetIt));
  }
  if (!from_name && IsReplayInterval(*from_bars)) return *from_bars;
  std::string problem = "most bars are " + IntervalName(*from_bars);
  if (*from_bars != kDaily) problem += " apart";
  if (from_name) problem += ", but the file name says " + IntervalText(*from_name);
  throw CsvError(problem + std::string(kSetIt));
}

}  // namespace velumar
