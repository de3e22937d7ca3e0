#include "marketdata/interval.h"

#include <algorithm>
#include <cstddef>

#include "base/number_text.h"
#include "base/text.h"

namespace velumar {

bool IsReplayInterval(int interval) {
  return std::ranges::find(kReplayIntervals, interval) != kReplayIntervals.end();
}

std::optional<int> IntervalFromText(std::string_view text) {
  constexpr int kMostMinutes = 65535;  // of two bytes in the index files
  if (UpperCased(text) == kDailyInterval) return kDaily;
  const auto minutes = ExactNumber<int>(text);
  return minutes && *minutes >= 0 && *minutes <= kMostMinutes ? minutes : std::nullopt;
}

std::string IntervalText(int interval) {
  return interval == kDaily ? std::string(kDailyInterval) : std::to_string(interval);
}

std::string IntervalName(int interval) {
  return interval < 0 ? "daily" : std::to_string(interval) + " minutes";
}

std::string ReplayIntervalsText() {
  std::string list = IntervalText(kReplayIntervals.front());
  for (std::size_t i = 1; i < kReplayIntervals.size(); ++i) {
    list +=
        (i + 1 < kReplayIntervals.size() ? ", " : " or ") + IntervalText(kReplayIntervals.at(i));
  }
  return list;
}

std::optional<SeriesArguments> ReplayableInterval(std::string_view text) {
  const auto interval = std::ranges::find_if(kReplayIntervals, [text](int one) {
    return text == IntervalText(one) || (one == 5 && text == "05");
  });
  if (interval == kReplayIntervals.end()) return std::nullopt;
  return SeriesArguments{*interval == kDaily ? 1 : 0, *interval};
}

std::string IntervalToMatch(std::string_view text) {
  const std::optional<SeriesArguments> arguments = ReplayableInterval(text);
  return arguments ? std::to_string(arguments->minutes) : std::string(text);
}

}  // namespace velumar
