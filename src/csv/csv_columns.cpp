#include "csv/csv_columns.h"

#include <algorithm>

#include "base/text.h"
#include "csv/csv_text.h"

namespace velumar {

namespace {

struct ColumnNames {
  CsvColumns::Column column;
  std::string_view title;    // in a message about the header
  std::string_view in_text;  // in a message about a value
  bool optional;
  // As PlainName returns them; the first one in the header counts.
  std::vector<std::string_view> names;
};

const std::array<ColumnNames, 8>& AllNames() {
  using C = CsvColumns;
  static const std::array<ColumnNames, 8> names = {{
      {C::kDate, "Date", "date", false, {"DATE", "DATETIME", "TIMESTAMP", "DTYYYYMMDD"}},
      {C::kTime, "Time", "time", true, {"TIME"}},
      {C::kOpen, "Open", "open", false, {"OPEN"}},
      {C::kHigh, "High", "high", false, {"HIGH"}},
      {C::kLow, "Low", "low", false, {"LOW"}},
      {C::kClose, "Close", "close", false, {"CLOSE"}},
      {C::kVolume, "Volume", "volume", true, {"VOLUME", "VOL", "TICKVOL", "TICKVOLUME"}},
      {C::kOpenInterest, "OpenInterest", "open interest", true, {"OPENINTEREST", "OPENINT", "OI"}},
  }};
  return names;
}

// "<Open Int.>" becomes OPENINT.
std::string PlainName(std::string_view field) {
  std::string name = UpperCased(field);
  std::erase_if(name,
                [](char c) { return std::string_view("<> ._-/").find(c) != std::string::npos; });
  return name;
}

std::optional<std::size_t> PlaceOf(const ColumnNames& column,
                                   const std::vector<std::string>& header) {
  for (const std::string_view name : column.names) {
    const auto first = std::ranges::find(header, name);
    if (first == header.end()) continue;
    if (std::find(first + 1, header.end(), name) != header.end()) {
      throw CsvError("the header names the column " + std::string(column.title) + " twice");
    }
    return static_cast<std::size_t>(first - header.begin());
  }
  return std::nullopt;
}

// Without the empty fields that some programs leave at the end of a line.
std::size_t UsedFields(const std::vector<std::string>& fields) {
  const auto last = std::find_if(fields.rbegin(), fields.rend(),
                                 [](const std::string& field) { return !field.empty(); });
  return static_cast<std::size_t>(fields.rend() - last);
}

}  // namespace

CsvColumns::CsvColumns(const std::vector<std::string>& header) : width_(UsedFields(header)) {
  std::vector<std::string> names;
  std::ranges::transform(header, std::back_inserter(names), PlainName);
  std::string missing;
  for (const ColumnNames& column : AllNames()) {
    places_[column.column] = PlaceOf(column, names);
    if (Has(column.column) || column.optional) continue;
    missing += (missing.empty() ? "" : ", ") + std::string(column.title);
  }
  if (missing.empty()) return;
  throw CsvError("no column " + missing + "; the first line must name the columns");
}

std::string_view CsvColumns::Name(Column column) { return AllNames()[column].in_text; }

void CsvColumns::RequireWidth(const std::vector<std::string>& fields) const {
  if (fields.size() >= width_ && UsedFields(fields) <= width_) return;
  throw CsvError("has " + std::to_string(fields.size()) + " fields, the header has " +
                 std::to_string(width_));
}

}  // namespace velumar
