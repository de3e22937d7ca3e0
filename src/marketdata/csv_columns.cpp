#include "marketdata/csv_columns.h"

#include <algorithm>

#include "base/text.h"
#include "marketdata/csv_error.h"

namespace velumar {

namespace {

struct Naming {
  CsvColumns::Column column;
  std::string_view title;   // in a message about the header
  std::string_view spoken;  // in a message about a cell
  // As PlainName writes them; the first that a header has is taken.
  std::vector<std::string_view> names;
};

const std::array<Naming, 8>& Namings() {
  using C = CsvColumns;
  static const std::array<Naming, 8> namings = {{
      {C::kDate, "Date", "date", {"DATE", "DATETIME", "TIMESTAMP", "DTYYYYMMDD"}},
      {C::kTime, "Time", "time", {"TIME"}},
      {C::kOpen, "Open", "open", {"OPEN"}},
      {C::kHigh, "High", "high", {"HIGH"}},
      {C::kLow, "Low", "low", {"LOW"}},
      {C::kClose, "Close", "close", {"CLOSE"}},
      {C::kVolume, "Volume", "volume", {"VOLUME", "VOL", "TICKVOL", "TICKVOLUME"}},
      {C::kOpenInterest, "OpenInterest", "open interest", {"OPENINTEREST", "OPENINT", "OI"}},
  }};
  return namings;
}

// "<Open Int.>" is OPENINT.
std::string PlainName(std::string_view cell) {
  std::string name = UpperCased(cell);
  std::erase_if(name,
                [](char c) { return std::string_view("<> ._-/").find(c) != std::string::npos; });
  return name;
}

std::optional<std::size_t> PlaceOf(const Naming& naming, const std::vector<std::string>& header) {
  for (const std::string_view name : naming.names) {
    const auto first = std::ranges::find(header, name);
    if (first == header.end()) continue;
    if (std::find(first + 1, header.end(), name) != header.end()) {
      throw CsvError("the column " + std::string(naming.title) + " stands twice in the header");
    }
    return static_cast<std::size_t>(first - header.begin());
  }
  return std::nullopt;
}

// Without the empty cells at the end, which some programs leave there.
std::size_t UsedCells(const std::vector<std::string>& cells) {
  const auto last = std::find_if(cells.rbegin(), cells.rend(),
                                 [](const std::string& cell) { return !cell.empty(); });
  return static_cast<std::size_t>(cells.rend() - last);
}

bool MayBeMissing(CsvColumns::Column column) {
  return column == CsvColumns::kTime || column == CsvColumns::kVolume ||
         column == CsvColumns::kOpenInterest;
}

}  // namespace

CsvColumns::CsvColumns(const std::vector<std::string>& header) : width_(UsedCells(header)) {
  std::vector<std::string> names;
  std::ranges::transform(header, std::back_inserter(names), PlainName);
  std::string missing;
  for (const Naming& naming : Namings()) {
    places_[naming.column] = PlaceOf(naming, names);
    if (Has(naming.column) || MayBeMissing(naming.column)) continue;
    missing += (missing.empty() ? "" : ", ") + std::string(naming.title);
  }
  if (missing.empty()) return;
  throw CsvError("no column " + missing + "; the first line is a header that names the columns");
}

std::string_view CsvColumns::Name(Column column) { return Namings()[column].spoken; }

void CsvColumns::RequireWidth(const std::vector<std::string>& cells) const {
  if (cells.size() >= width_ && UsedCells(cells) <= width_) return;
  throw CsvError("has " + std::to_string(cells.size()) + " cells, the header has " +
                 std::to_string(width_));
}

}  // namespace velumar
