#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "import/import_options.h"
#include "marketdata/bar.h"

namespace velumar {

// A price file that cannot be imported. The message names the line and the value where there is
// one, but not the file.
class ImportError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// A file that can be read in several ways. The message is a sentence that says so.
class FormatUndecided : public ImportError {
 public:
  FormatUndecided(const std::string& text, std::string option)
      : ImportError(text), option_(std::move(option)) {}
  // That decides it: "--decimal comma or point".
  const std::string& Option() const { return option_; }

 private:
  std::string option_;
};

// What a column holds.
enum class PriceField : std::uint8_t {
  kIgnored,
  kTicker,
  kPeriod,
  kDate,
  kTime,
  kOpen,
  kHigh,
  kLow,
  kClose,
  kAdjustedClose,
  kVolume,
  kTickVolume,
  kUpVolume,
  kDownVolume,
  kOpenInterest
};

struct ColumnMeaning {
  std::string title;  // as the header writes it; empty without a header
  PriceField field = PriceField::kIgnored;
  std::string reason;          // one short sentence
  bool may_be_volume = false;  // of an ignored column: no other one is known to hold the volume
};

// One bar as a line of the file states it. Views are valid until the next call of the reader.
struct PriceRow {
  Bar bar;                        // date and time as written; prices scaled, as traded
  float adjusted_close = 0;       // scaled; equal to the close if the file has none
  std::optional<int> utc_offset;  // minutes east of UTC, if the line states it
  std::string_view ticker;
  std::string_view period;
  std::int64_t line = 0;  // the first is 1
};

// How a file is written.
struct FileFormat {
  std::string container;  // "", "gzip" or "zip: NAME"
  std::string encoding;   // "UTF-8", "UTF-16", "Windows-1252"
  char separator = ',';   // ' ' means runs of blanks
  bool decimal_comma = false;
  std::int64_t header_line = 0;  // 0: the columns were inferred
  std::vector<ColumnMeaning> columns;
  std::string dates;             // "day/month/year", "Unix time in ms", the pattern
  bool date_order_open = false;  // day and month can be read both ways: dates are read as
                                 // day/month/year until the option decides
  bool month_may_be_first = true;
  bool year_may_be_first = false;
  bool times_may_be_tickers = false;  // digits in a column without a name
  std::string zone;                   // as the file states it: "UTC", "Gmt time", "+02:00"
  int price_decimals = 0;             // the most that a scaled price needs as a 32-bit float
};

// What a reader has counted so far.
struct RowCounts {
  std::int64_t rows = 0;
  std::int64_t skipped = 0;  // rows with a date but without a price: empty, null, N/A, ...
  std::int64_t first_skipped_line = 0;
  std::int64_t other_lines = 0;  // titles, comments, footers, repeated headers; not blank lines
};

// Reads price files: plain, gzip, or a zip with one file inside; any usual encoding, separator,
// header, date and number format. Memory stays bounded whatever the size of the file.
class PriceReader {
 public:
  // Recognises the format from the start of the file, and from all of its rows where the start
  // leaves the order of day and month open, or which volumes to take. Throws ImportError.
  PriceReader(const std::filesystem::path& file, const ImportOptions& options);
  ~PriceReader();
  PriceReader(const PriceReader&) = delete;
  PriceReader& operator=(const PriceReader&) = delete;

  // The zone is known from the first Next on, the number of decimals after the last.
  const FileFormat& Format() const;
  // The next rows in the order of the file; empty at its end. Throws ImportError naming the first
  // bad line.
  std::span<const PriceRow> Next();
  // The text of the line of a row of the last Next, in UTF-8, without its end.
  std::string_view RawLine(const PriceRow& row) const;
  const RowCounts& Counts() const;
  // From 0 to 1, by the bytes that were read.
  double Progress() const;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace velumar
