#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "csv/csv_values.h"
#include "marketdata/bar.h"

namespace velumar {

class IndexCache;

// What the user sets; the rest is taken from the file's name and its bars.
struct CsvImportOptions {
  std::optional<std::string> symbol;  // any case
  std::optional<std::string> name;    // default: the name of the replaced security, or the symbol
  std::optional<int> interval;        // -1 or minutes
  CsvDateFormat date_format;
};

// What was imported.
struct CsvImportReport {
  std::string symbol;
  int interval = -1;
  int bars = 0;
  std::int32_t first_date = 0;  // yyyymmdd
  std::int32_t last_date = 0;
  int contradictions = 0;            // bars whose prices contradict each other
  int first_contradiction_line = 0;  // of the file
  int times_left_out = 0;            // bars of a daily series that had a time
};

// What the name of a CSV file, without folder and extension, says: "AAPL_D" is daily bars of AAPL,
// "TEST_15" bars of 15 minutes of TEST. Without such an ending, all of it is the symbol.
struct CsvNameGuess {
  std::string symbol;  // in upper case
  std::optional<int> interval;
};
CsvNameGuess GuessFromName(std::string_view stem);

// The interval of sorted bars: that of the name if the bars agree with it, else the most frequent
// gap in seconds between bars of one day, the smallest if several are, rounded down to minutes, or
// daily for one bar a day, always at the same time. Throws CsvError if name and bars disagree or
// the result cannot be replayed.
int GuessInterval(const std::vector<Bar>& bars, std::optional<int> from_name);

// Adds the bars of a CSV file to a market data directory as one security, or replaces the one of
// the same symbol and interval, completely or not at all. The stages are bytes, lines, fields
// (csv_text.h), values (csv_values.h), bars (csv_series.h), then symbol and interval. Throws
// CsvError, naming file and line, and MetaLibError.
CsvImportReport ImportCsv(const std::filesystem::path& file, std::string_view directory,
                          const CsvImportOptions& options, IndexCache& cache);

}  // namespace velumar
