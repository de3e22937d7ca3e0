#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "marketdata/bar.h"

namespace velumar {

// What the name of a CSV file, without folder and extension, says: "AAPL_D" is daily bars of AAPL,
// "TEST_15" bars of 15 minutes of TEST. Without such an ending, all of it is the symbol.
struct CsvNameGuess {
  std::string symbol;  // in upper case
  std::optional<int> interval;
};
CsvNameGuess GuessFromName(std::string_view stem);

// The interval of sorted bars: that of the name if the bars agree with it, else the most frequent
// gap in seconds between bars of one day, rounded down to minutes, or daily for one bar a day,
// always at the same time. Throws CsvError if name and bars disagree or the result cannot be
// replayed.
int GuessInterval(const std::vector<Bar>& bars, std::optional<int> from_name);

}  // namespace velumar
