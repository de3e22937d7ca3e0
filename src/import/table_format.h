#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "import/import_options.h"
#include "import/moment_reader.h"
#include "import/price_number.h"
#include "import/price_reader.h"

namespace velumar {

struct TextLine {
  std::int64_t number = 0;  // the first is 1
  std::string_view text;
};

inline constexpr std::array<PriceField, 4> kFourPrices = {PriceField::kOpen, PriceField::kHigh,
                                                          PriceField::kLow, PriceField::kClose};
inline constexpr std::size_t kPriceFields = static_cast<std::size_t>(PriceField::kOpenInterest) + 1;

// How the rows of a file are read.
struct TableFormat {
  char separator = ',';
  NumberStyle numbers;
  DateStyle dates;
  TimeDigits time_digits = TimeDigits::kHoursAndMinutes;
  bool times_may_be_tickers = false;  // digits in a column without a name
  std::int64_t header_line = 0;       // 0: none
  std::string header;                 // the text of that line
  std::vector<ColumnMeaning> columns;
  // The column of each field, by its number.
  std::array<std::optional<std::size_t>, kPriceFields> places;
  std::int64_t first_row_line = 0;
  std::size_t width = 0;   // fields of the header or, without one, of most rows
  std::string first_date;  // as the first row writes it
  std::string zone;        // that the header states
  // What the first lines leave open; DecideByAllRows decides.
  bool is_order_open = false;
  bool month_may_be_first = true;  // while the order is open
  bool year_may_be_first = false;
  bool is_volume_open = false;

  std::optional<std::size_t> Place(PriceField field) const {
    return places[static_cast<std::size_t>(field)];
  }
  void SetPlace(PriceField field, std::optional<std::size_t> column) {
    places[static_cast<std::size_t>(field)] = column;
  }
};

// Recognises the table in the first lines of a file, without its empty ones. Throws ImportError if
// there is none or a column is missing.
TableFormat RecogniseTable(std::span<const TextLine> lines, const ImportOptions& options);

}  // namespace velumar
