#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace velumar {

// What the name of a price file, without folder and extension, says.
struct NameGuess {
  std::string symbol = {};           // in upper case
  std::optional<int> interval = {};  // kDaily or minutes; also those that can't be replayed
  // If false, the ending may as well belong to the symbol, as in US30 or FUND_1: the guess holds
  // only if the bars have that interval. Otherwise all of the name is the symbol.
  bool certain = true;
  std::string whole = {};  // the name as a symbol
};

// "AAPL_D" and "AAPL daily" are daily bars, "TEST_15", "EURUSD_M5_2020" and "EURUSD60" such of 15,
// 5 and 60 minutes. A copy's number, " (1)", is ignored.
NameGuess GuessFromName(std::string_view stem);

// Of a column or a part of a file name: "D", "daily", "5", "M5", "5min", "H1", "1h", "W", "MN".
// Returns kDaily or minutes.
std::optional<int> IntervalFromWord(std::string_view word);

}  // namespace velumar
