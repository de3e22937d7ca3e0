#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "marketdata/bar.h"

namespace velumar {

// What the name of a CSV file tells, without its folder and extension: "AAPL_D" is AAPL's daily
// bars, "TEST_15" TEST's of 15 minutes. Without such an ending the whole is the symbol.
struct CsvNameGuess {
  std::string symbol;  // upper-cased
  std::optional<int> interval;
};
CsvNameGuess GuessFromName(std::string_view stem);

// The interval of bars in order: what the name tells where the bars agree with it, else the gap
// that most neighbours of one day have, or daily for one bar a day at one and the same time. Throws
// CsvError where the two disagree or no replayed interval comes out.
int GuessInterval(const std::vector<Bar>& bars, std::optional<int> from_name);

}  // namespace velumar
