#include "csv/csv_series.h"

#include <algorithm>
#include <string>
#include <tuple>
#include <utility>

#include "csv/csv_columns.h"
#include "csv/csv_text.h"
#include "marketdata/data_file.h"

namespace velumar {

namespace {

// One line of the file, split into its columns.
class Row {
 public:
  Row(const CsvColumns& columns, const std::vector<std::string>& fields)
      : columns_(columns), fields_(fields) {
    columns_.RequireWidth(fields_);
  }

  // The value that `read` returns for the field. Errors begin with the column's name.
  template <typename Read>
  auto Value(CsvColumns::Column column, Read read) const {
    try {
      return read(columns_.Field(fields_, column));
    } catch (const CsvError& error) {
      throw CsvError("the " + std::string(CsvColumns::Name(column)) + " " + error.what());
    }
  }

  float Number(CsvColumns::Column column) const {
    return columns_.Has(column) ? Value(column, CsvNumber) : 0;
  }

 private:
  const CsvColumns& columns_;
  const std::vector<std::string>& fields_;
};

Bar ReadBar(const CsvColumns& columns, const Row& row, const CsvDateFormat& date_format) {
  const CsvDateTime moment = row.Value(
      CsvColumns::kDate, [&](const std::string& field) { return date_format.Read(field); });
  std::int32_t time = moment.time.value_or(0);
  if (columns.Has(CsvColumns::kTime)) {
    // Many files repeat the date as "2020-01-02 00:00" next to the real time.
    const std::int32_t own = row.Value(CsvColumns::kTime, CsvTime);
    if (time != 0 && time != own) {
      throw CsvError("the time in the date differs from the one in the column Time");
    }
    time = own;
  }
  return {.date = moment.date,
          .time = time,
          .open = row.Number(CsvColumns::kOpen),
          .high = row.Number(CsvColumns::kHigh),
          .low = row.Number(CsvColumns::kLow),
          .close = row.Number(CsvColumns::kClose),
          .volume = row.Number(CsvColumns::kVolume),
          .open_interest = row.Number(CsvColumns::kOpenInterest)};
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
  const CsvColumns columns(lines.Fields());
  RequireRoomFor(lines);
  CsvSeries series;
  int bad_lines = 0;
  std::string first;
  while (lines.Next()) {
    try {
      const Bar bar = ReadBar(columns, Row(columns, lines.Fields()), date_format);
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
