#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "marketdata/csv_date_format.h"

namespace velumar {

class IndexCache;

// What is told beside the file; the rest is guessed from its name and its bars.
struct CsvImportOptions {
  std::optional<std::string> symbol;  // any case
  std::optional<std::string> name;    // without it a replaced security keeps its name
  std::optional<int> interval;        // -1 or minutes
  CsvDateFormat date_format;
};

// What came in.
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

// Adds one security with the bars of a CSV file to a market data directory, or replaces the one of
// the same symbol and interval, whole or not at all. Reads regular files of at most 64 MiB and
// kMostBars bars. Throws CsvError, naming file and line, and MetaLibError.
CsvImportReport ImportCsv(const std::filesystem::path& file, std::string_view directory,
                          const CsvImportOptions& options, IndexCache& cache);

}  // namespace velumar
