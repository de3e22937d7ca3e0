#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace velumar {

// The interval of a series is a number of minutes, or kDaily.
inline constexpr int kDaily = -1;

// The intervals that can be replayed, and so the ones that an import brings.
inline constexpr std::array kReplayIntervals = {kDaily, 5, 10, 15, 30, 60};
bool IsReplayInterval(int interval);
std::string ReplayIntervalsText();  // "D, 5, 10, 15, 30 or 60"

// As people write it: "D" (or "d") or the minutes.
inline constexpr std::string_view kDailyInterval = "D";
std::optional<int> IntervalFromText(std::string_view text);
std::string IntervalText(int interval);

// As messages name it: "daily", "15 minutes".
std::string IntervalName(int interval);

// What an interval text asks of the reader and the writer.
struct SeriesArguments {
  int daily = 0;         // 1 for a daily series
  int minutes = kDaily;  // the interval
  bool operator==(const SeriesArguments&) const = default;
};

// For the texts of the intervals that can be replayed, and "05". Nothing for any other text.
std::optional<SeriesArguments> ReplayableInterval(std::string_view text);

// The decimal text of SecurityInterval that an interval text must match. A text that can't be
// replayed matches itself.
std::string IntervalToMatch(std::string_view text);

}  // namespace velumar
