#pragma once

#include <string_view>
#include <vector>

#include "marketdata/bar.h"
#include "marketdata/csv_date_format.h"

namespace velumar {

// The bars of a CSV file, oldest first, each with the number of the line that it stands on.
struct CsvSeries {
  std::vector<Bar> bars;
  std::vector<int> lines;
};

// Reads the text of a CSV file. Throws CsvError that names the first line with a fault and counts
// the others: a cell that can't be read or stored, or a bar that is not later than the one above.
// More than kMostBars bars are refused before any is read. Optional columns that are missing read
// as 0.
CsvSeries ReadCsvSeries(std::string_view text, const CsvDateFormat& date_format);

// Makes the bars those of a daily series, which keeps no times: takes the times off and answers how
// many bars had one. Throws CsvError, naming the line, where a day comes again.
int MakeDaily(CsvSeries& series);

// Whether an open or close lies outside high and low, or the low above the high.
bool PricesContradict(const Bar& bar);

}  // namespace velumar
