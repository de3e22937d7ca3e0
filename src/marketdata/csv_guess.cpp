#include "marketdata/csv_guess.h"

#include <algorithm>
#include <map>

#include "base/text.h"
#include "marketdata/csv_error.h"
#include "marketdata/interval.h"

namespace velumar {

namespace {

constexpr std::string_view kAsk = "; say the interval";

int SecondOfDay(std::int32_t time) {
  return time / 10000 * 3600 + time / 100 % 100 * 60 + time % 100;
}

// How many neighbours of one day lie how many seconds apart.
std::map<int, int> GapsWithinDays(const std::vector<Bar>& bars) {
  std::map<int, int> gaps;
  for (std::size_t i = 1; i < bars.size(); ++i) {
    if (bars[i].date != bars[i - 1].date) continue;
    ++gaps[SecondOfDay(bars[i].time) - SecondOfDay(bars[i - 1].time)];
  }
  return gaps;
}

// Bars of one a day, always at the same time. A lone bar with a time could be of any interval.
bool LookDaily(const std::vector<Bar>& bars) {
  const auto same_time = [&](const Bar& bar) { return bar.time == bars.front().time; };
  return std::ranges::all_of(bars, same_time) && (bars.size() > 1 || bars.front().time == 0);
}

// From the bars alone; none where they don't tell.
std::optional<int> IntervalOfBars(const std::vector<Bar>& bars) {
  const std::map<int, int> gaps = GapsWithinDays(bars);
  if (gaps.empty()) return LookDaily(bars) ? std::optional(kDaily) : std::nullopt;
  const auto [seconds, count] = *std::ranges::max_element(
      gaps, {}, [](const auto& gap) { return std::pair(gap.second, -gap.first); });
  return seconds / 60;
}

std::string Spoken(int interval) {
  return interval == kDaily ? "daily" : std::to_string(interval) + " minutes apart";
}

// A thin market may leave out most of its bars, so wider gaps than the name tells are no surprise.
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
  if (!from_bars) throw CsvError("the bars don't tell their interval" + std::string(kAsk));
  const std::string found = "most bars are " + Spoken(*from_bars);
  if (from_name) {
    throw CsvError(found + ", but the file's name says " + IntervalText(*from_name) +
                   std::string(kAsk));
  }
  if (!IsReplayInterval(*from_bars)) throw CsvError(found + std::string(kAsk));
  return *from_bars;
}

}  // namespace velumar
