#pragma once

#include <string_view>
#include <vector>

#include "csv/csv_values.h"
#include "marketdata/bar.h"

namespace velumar {

// The bars of a CSV file, oldest first, each with the number of its line.
struct CsvSeries {
  std::vector<Bar> bars;
  std::vector<int> lines;
};

// Reads the text of a CSV file. The columns Time, Volume and OpenInterest are optional and read as
// 0. Throws CsvError that names the first bad line and counts the others: a value that cannot be
// read or stored, or a bar that is not later than the one before. More than kMostBars bars are
// refused before any is read.
CsvSeries ReadCsvSeries(std::string_view text, const CsvDateFormat& date_format);

// Removes the times, since a daily series has none, and returns how many bars had one. Throws
// CsvError, naming the line, if two bars have the same date.
int MakeDaily(CsvSeries& series);

// True if the open, high or close is below the low, or the open or close above the high.
bool PricesContradict(const Bar& bar);

}  // namespace velumar
