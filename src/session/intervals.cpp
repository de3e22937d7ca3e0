#include "session/intervals.h"

#include <array>

namespace velumar {

std::optional<SeriesArguments> ReplayableInterval(std::string_view text) {
  struct Row {
    std::string_view text;
    SeriesArguments arguments;
  };
  static constexpr std::array<Row, 7> kTable{{{kDailyInterval, {1, -1}},
                                              {"5", {0, 5}},
                                              {"05", {0, 5}},
                                              {"10", {0, 10}},
                                              {"15", {0, 15}},
                                              {"30", {0, 30}},
                                              {"60", {0, 60}}}};
  for (const Row& row : kTable) {
    if (row.text == text) return row.arguments;
  }
  return std::nullopt;
}

std::string IntervalToMatch(std::string_view text) {
  const std::optional<SeriesArguments> arguments = ReplayableInterval(text);
  return arguments ? std::to_string(arguments->minutes) : std::string(text);
}

}  // namespace velumar
