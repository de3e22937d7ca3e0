#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace velumar {

// The interval of a series is a number of minutes, or kDaily.
inline constexpr int kDaily = -1;

// The intervals that can be replayed, and so imported. The type is written out: GCC for Windows
// puts a deduced one among constants in some sources and among variables in others, and linking
// fails.
inline constexpr std::array<int, 6> kReplayIntervals = {kDaily, 5, 10, 15, 30, 60};
bool IsReplayInterval(int interval);
std::string ReplayIntervalsText();  // "D, 5, 10, 15, 30 or 60"

// A series of more bars than this can't be replayed: it doesn't fit the 16-bit cursor of a run.
inline constexpr int kLongestSeries = 32768;

// As people write it: "D" (or "d") or the minutes.
inline constexpr std::string_view kDailyInterval = "D";
std::optional<int> IntervalFromText(std::string_view text);
std::string IntervalText(int interval);

// As messages name it: "daily", "15 minutes".
std::string IntervalName(int interval);

// The arguments of SelectSeries for an interval text.
struct SeriesArguments {
  int daily = 0;         // 1 for a daily series
  int minutes = kDaily;  // the interval
  bool operator==(const SeriesArguments&) const = default;
};

// For the intervals that can be replayed, and "05"; nothing for any other text.
std::optional<SeriesArguments> ReplayableInterval(std::string_view text);

// The text of SecurityInterval that belongs to an interval text: "-1" for "D", "5" for "05". Any
// other text is returned unchanged.
std::string IntervalToMatch(std::string_view text);

}  // namespace velumar
