#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace velumar {

// What an interval text asks of the market data library.
struct SeriesArguments {
  int daily = 0;     // 1 for a daily series
  int minutes = -1;  // -1 for a daily series
  bool operator==(const SeriesArguments&) const = default;
};

// The intervals that can be replayed: "D", "5" (also "05"), "10", "15", "30", "60". Nothing for any
// other text.
std::optional<SeriesArguments> ReplayableInterval(std::string_view text);

// The decimal text of SecurityInterval that an interval text must match. A text that can't be
// replayed matches itself.
std::string IntervalToMatch(std::string_view text);

inline constexpr std::string_view kDailyInterval = "D";

}  // namespace velumar
