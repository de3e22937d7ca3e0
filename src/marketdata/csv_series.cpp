#include "marketdata/csv_series.h"

#include <algorithm>
#include <string>
#include <utility>

#include "marketdata/csv_columns.h"
#include "marketdata/csv_error.h"
#include "marketdata/csv_lines.h"
#include "marketdata/csv_values.h"
#include "marketdata/data_file.h"

namespace velumar {

namespace {

using Cells = std::vector<std::string>;

// Calls `read` on the cell of a column and puts the column's name in front of its complaint.
template <typename Read>
auto ReadCell(const CsvColumns& columns, const Cells& cells, CsvColumns::Column column, Read read) {
  try {
    return read(columns.Cell(cells, column));
  } catch (const CsvError& error) {
    throw CsvError("the " + std::string(CsvColumns::Name(column)) + " " + error.what());
  }
}

float ReadNumber(const CsvColumns& columns, const Cells& cells, CsvColumns::Column column) {
  return columns.Has(column) ? ReadCell(columns, cells, column, CsvNumber) : 0;
}

// A file of two columns often repeats the day as "2020-01-02 00:00" beside the true time.
std::int32_t OneTime(std::int32_t beside_date, std::int32_t own) {
  if (beside_date != 0 && beside_date != own) {
    throw CsvError("the date holds another time than the column Time");
  }
  return own;
}

Bar ReadBar(const CsvColumns& columns, const Cells& cells, const CsvDateFormat& date_format) {
  columns.RequireWidth(cells);
  const CsvDateTime moment =
      ReadCell(columns, cells, CsvColumns::kDate,
               [&](const std::string& cell) { return date_format.Read(cell); });
  Bar bar;
  bar.date = moment.date;
  bar.time = moment.time.value_or(0);
  if (columns.Has(CsvColumns::kTime)) {
    bar.time = OneTime(bar.time, ReadCell(columns, cells, CsvColumns::kTime, CsvTime));
  }
  bar.open = ReadNumber(columns, cells, CsvColumns::kOpen);
  bar.high = ReadNumber(columns, cells, CsvColumns::kHigh);
  bar.low = ReadNumber(columns, cells, CsvColumns::kLow);
  bar.close = ReadNumber(columns, cells, CsvColumns::kClose);
  bar.volume = ReadNumber(columns, cells, CsvColumns::kVolume);
  bar.open_interest = ReadNumber(columns, cells, CsvColumns::kOpenInterest);
  return bar;
}

std::pair<std::int32_t, std::int32_t> Moment(const Bar& bar) { return {bar.date, bar.time}; }

void RequireLater(const Bar& bar, const CsvSeries& before) {
  if (before.bars.empty() || Moment(bar) > Moment(before.bars.back())) return;
  const bool again = Moment(bar) == Moment(before.bars.back());
  throw CsvError((again ? "has the date and time of line " : "comes before the bar of line ") +
                 std::to_string(before.lines.back()) + "; bars go from the oldest to the newest");
}

// Counts the lines first, so a file with millions of them is refused at once.
void RequireRoomFor(CsvLines lines) {
  int bars = 0;
  while (lines.Next()) ++bars;
  if (bars <= kMostBars) return;
  throw CsvError("holds " + std::to_string(bars) + " bars; a series holds at most " +
                 std::to_string(kMostBars));
}

// The first fault in full, the others counted.
class Faults {
 public:
  void Add(int line, const char* reason) {
    if (count_++ == 0) first_ = "line " + std::to_string(line) + ": " + reason;
  }

  void ThrowIfAny() const {
    if (count_ == 0) return;
    const std::string more =
        count_ == 2 ? " (and 1 more line)" : " (and " + std::to_string(count_ - 1) + " more lines)";
    throw CsvError(first_ + (count_ == 1 ? "" : more));
  }

 private:
  int count_ = 0;
  std::string first_;
};

}  // namespace

CsvSeries ReadCsvSeries(std::string_view text, const CsvDateFormat& date_format) {
  CsvLines lines(text);
  if (!lines.Next()) throw CsvError("the file is empty");
  const CsvColumns columns(lines.Cells());
  RequireRoomFor(lines);
  CsvSeries series;
  Faults faults;
  while (lines.Next()) {
    try {
      const Bar bar = ReadBar(columns, lines.Cells(), date_format);
      RequireLater(bar, series);
      series.bars.push_back(bar);
      series.lines.push_back(lines.Number());
    } catch (const CsvError& error) {
      faults.Add(lines.Number(), error.what());
    }
  }
  faults.ThrowIfAny();
  if (series.bars.empty()) throw CsvError("the file has a header but no bars");
  return series;
}

int MakeDaily(CsvSeries& series) {
  const auto again = std::ranges::adjacent_find(series.bars, {}, &Bar::date);
  if (again != series.bars.end()) {
    const auto place = static_cast<std::size_t>(again - series.bars.begin());
    throw CsvError("line " + std::to_string(series.lines[place + 1]) + ": the day " +
                   std::to_string(again->date) + " comes again; a daily series has one bar a day");
  }
  int timed = 0;
  for (Bar& bar : series.bars) timed += std::exchange(bar.time, 0) != 0 ? 1 : 0;
  return timed;
}

bool PricesContradict(const Bar& bar) {
  return bar.low > std::min({bar.open, bar.high, bar.close}) ||
         bar.high < std::max(bar.open, bar.close);
}

}  // namespace velumar
