#include "csv/csv_series.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <tuple>
#include <utility>

#include "base/text.h"
#include "csv/csv_text.h"
#include "marketdata/data_file.h"

namespace velumar {

namespace {

enum Column : std::uint8_t { kDate, kTime, kOpen, kHigh, kLow, kClose, kVolume, kOpenInterest };

struct ColumnNames {
  std::string_view title;    // in a message about the header
  std::string_view in_text;  // in a message about a value
  bool optional;
  // As PlainName returns them; the first one in the header counts.
  std::vector<std::string_view> names;
};

const std::array<ColumnNames, 8>& AllNames() {
  static const std::array<ColumnNames, 8> names = {{
      {"Date", "date", false, {"DATE", "DATETIME", "TIMESTAMP", "DTYYYYMMDD"}},
      {"Time", "time", true, {"TIME"}},
      {"Open", "open", false, {"OPEN"}},
      {"High", "high", false, {"HIGH"}},
      {"Low", "low", false, {"LOW"}},
      {"Close", "close", false, {"CLOSE"}},
      {"Volume", "volume", true, {"VOLUME", "VOL", "TICKVOL", "TICKVOLUME"}},
      {"OpenInterest", "open interest", true, {"OPENINTEREST", "OPENINT", "OI"}},
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

// Which field of a line belongs to which column, according to the header, and the current line.
// Names match in any case and order, with or without "<>", blanks and points, and in the usual
// short forms ("Vol.", "Open Int", "DateTime"). Other columns are ignored.
class Row {
 public:
  // Throws CsvError naming the columns that are missing, or one that occurs twice.
  explicit Row(const std::vector<std::string>& header) : width_(UsedFields(header)) {
    std::vector<std::string> names;
    std::ranges::transform(header, std::back_inserter(names), PlainName);
    std::string missing;
    for (std::size_t i = 0; i < places_.size(); ++i) {
      const ColumnNames& column = AllNames()[i];
      places_[i] = PlaceOf(column, names);
      if (places_[i] || column.optional) continue;
      missing += (missing.empty() ? "" : ", ") + std::string(column.title);
    }
    if (missing.empty()) return;
    throw CsvError("no column " + missing + "; the first line must name the columns");
  }

  // Moves to a line; `fields` must outlive its use. Throws CsvError if it has fewer fields than the
  // header, or more that are not empty.
  void MoveTo(const std::vector<std::string>& fields) {
    fields_ = &fields;
    if (fields.size() >= width_ && UsedFields(fields) <= width_) return;
    throw CsvError("has " + std::to_string(fields.size()) + " fields, the header has " +
                   std::to_string(width_));
  }

  bool Has(Column column) const { return places_[column].has_value(); }

  // The value that `read` returns for the field. Errors begin with the column's name.
  template <typename Read>
  auto Value(Column column, Read read) const {
    try {
      return read((*fields_)[*places_[column]]);
    } catch (const CsvError& error) {
      throw CsvError("the " + std::string(AllNames()[column].in_text) + " " + error.what());
    }
  }

  float Number(Column column) const { return Has(column) ? Value(column, CsvNumber) : 0; }

 private:
  std::array<std::optional<std::size_t>, 8> places_;
  std::size_t width_;
  const std::vector<std::string>* fields_ = nullptr;
};

Bar ReadBar(const Row& row, const CsvDateFormat& date_format) {
  const CsvDateTime moment =
      row.Value(kDate, [&](const std::string& field) { return date_format.Read(field); });
  std::int32_t time = moment.time.value_or(0);
  if (row.Has(kTime)) {
    // Many files repeat the date as "2020-01-02 00:00" next to the real time.
    const std::int32_t own = row.Value(kTime, CsvTime);
    if (time != 0 && time != own) {
      throw CsvError("the time in the date differs from the one in the column Time");
    }
    time = own;
  }
  return {.date = moment.date,
          .time = time,
          .open = row.Number(kOpen),
          .high = row.Number(kHigh),
          .low = row.Number(kLow),
          .close = row.Number(kClose),
          .volume = row.Number(kVolume),
          .open_interest = row.Number(kOpenInterest)};
}

void RequireLater(const Bar& bar, const CsvSeries& before) {
  if (before.bars.empty()) return;
  const Bar& last = before.bars.back();
  if (std::tie(bar.date, bar.time) > std::tie(last.date, last.time)) return;
  const bool same = bar.date == last.date && bar.time == last.time;
  throw CsvError((same ? "has the date and time of line " : "is older than line ") +
                 std::to_string(before.lines.back()) + "; bars must be sorted, oldest first");
}

// Counts the lines first, so that a file with millions of them is refused at once.
void RequireRoomFor(CsvLines lines) {
  int bars = 0;
  while (lines.Next()) ++bars;
  if (bars <= kMostBars) return;
  throw CsvError("has " + std::to_string(bars) + " bars; a series holds at most " +
                 std::to_string(kMostBars));
}

}  // namespace

CsvSeries ReadCsvSeries(std::string_view text, const CsvDateFormat& date_format) {
  CsvLines lines(text);
  if (!lines.Next()) throw CsvError("the file is empty");
  Row row(lines.Fields());
  RequireRoomFor(lines);
  CsvSeries series;
  int bad_lines = 0;
  std::string first;
  while (lines.Next()) {
    try {
      row.MoveTo(lines.Fields());
      const Bar bar = ReadBar(row, date_format);
      RequireLater(bar, series);
      series.bars.push_back(bar);
      series.lines.push_back(lines.Number());
    } catch (const CsvError& error) {
      if (bad_lines++ == 0) first = "line " + std::to_string(lines.Number()) + ": " + error.what();
    }
  }
  if (bad_lines == 1) throw CsvError(first);
  if (bad_lines > 1) {
    throw CsvError(first + " (and " + std::to_string(bad_lines - 1) + " more bad " +
                   (bad_lines == 2 ? "line)" : "lines)"));
  }
  if (series.bars.empty()) throw CsvError("the file has a header but no bars");
  return series;
}

int MakeDaily(CsvSeries& series) {
  const auto same = std::ranges::adjacent_find(series.bars, {}, &Bar::date);
  if (same != series.bars.end()) {
    const auto place = static_cast<std::size_t>(same - series.bars.begin());
    throw CsvError("line " + std::to_string(series.lines[place + 1]) + ": a second bar of " +
                   std::to_string(same->date) + "; a daily series has one bar a day");
  }
  int with_time = 0;
  for (Bar& bar : series.bars) with_time += std::exchange(bar.time, 0) != 0 ? 1 : 0;
  return with_time;
}

bool PricesContradict(const Bar& bar) {
  return bar.low > std::min({bar.open, bar.high, bar.close}) ||
         bar.high < std::max(bar.open, bar.close);
}

}  // namespace velumar
