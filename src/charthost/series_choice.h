#pragma once

#include <optional>
#include <string>
#include <vector>

#include "marketdata/metalib_reader.h"

namespace velumar {

// What a chart was asked to show.
struct SeriesRequest {
  std::string folder;  // as NormalFolder gives it
  std::string symbol;
  // Set where a person chose one row of the list. Else the symbol alone was typed, and a working
  // folder may get its bars only later, in any of the symbol's intervals.
  std::optional<int> file_number;
};

bool SameSymbol(const std::string& one, const std::string& other);

// Which of these securities, all of one folder, the request means: the chosen file; else of its
// symbol the one that is `shown` already as long as it has bars, else the first with bars, else the
// first. Nothing when the folder doesn't know the symbol.
std::optional<SecurityInfo> ChooseSeries(const std::vector<SecurityInfo>& securities,
                                         const SeriesRequest& request, std::optional<int> shown);

// What a person or a program has put into the lines of the file dialog.
struct TypedChoice {
  std::string folder;
  std::string symbol;
  std::optional<int> interval;  // unset: whichever has bars
};

// The request that the lines stand for; throws std::invalid_argument with a sentence to show.
SeriesRequest RequestOf(const TypedChoice& choice, const std::vector<SecurityInfo>& securities);

}  // namespace velumar
