#include "import/price_reader.h"

#include <algorithm>
#include <string>
#include <unordered_set>

#include "import/column_scan.h"
#include "import/field_text.h"
#include "import/line_fields.h"
#include "import/plain_rows.h"
#include "import/row_reader.h"
#include "import/table_format.h"
#include "import/text_source.h"

namespace velumar {

namespace {

constexpr std::size_t kRowsAtOnce = 1024;
constexpr std::size_t kSampleLines = 2000;

int ShiftOfScale(int scale) {
  int shift = 0;
  for (; scale >= 10; scale /= 10) ++shift;
  return shift;
}

// Of the first block of a file.
TableFormat Recognise(std::string_view text, const std::filesystem::path& file,
                      const ImportOptions& options) {
  std::vector<TextLine> lines;
  std::string_view line;
  for (std::int64_t number = 1; lines.size() < kSampleLines && TakeLine(text, line); ++number) {
    if (!IsBlankLine(line)) lines.push_back({number, line});
  }
  if (lines.empty()) throw ImportError("the file is empty");
  TableFormat format = RecogniseTable(lines, options);
  if (format.is_order_open || format.is_volume_open) DecideByAllRows(file, format);
  return format;
}

// For people: how the dates are written.
std::string NameOfDates(const DateStyle& style, std::string_view first) {
  switch (style.kind) {
    case DateStyle::Kind::kPattern:
      return style.pattern->Text();
    case DateStyle::Kind::kSixDigits:
      return "yymmdd";
    case DateStyle::Kind::kUnix:
      return std::string("Unix time in ") + (style.per_second == 1           ? "s"
                                             : style.per_second == 1'000     ? "ms"
                                             : style.per_second == 1'000'000 ? "µs"
                                                                             : "ns");
    case DateStyle::Kind::kText:
      break;
  }
  if (ReadOrderlessDate(first.substr(0, first.find(' ')))) {
    return style.order == DateOrder::kDayMonthYear   ? "day/month/year"
           : style.order == DateOrder::kMonthDayYear ? "month/day/year"
                                                     : "year/month/day";
  }
  if (std::ranges::all_of(first, IsDigit)) return "digits, year first";
  if (std::ranges::any_of(first.substr(0, first.find_first_of("T:")), IsLetter)) {
    return "names of months";
  }
  return "year-month-day";
}

// Lines after the last row that no person would take for one: they begin with a letter or a sign,
// or with a number and a word.
bool LooksLikeFooter(std::string_view line, const std::vector<std::string_view>& fields) {
  line = Stripped(line);
  const bool is_text = !IsDigit(line.front()) && std::ranges::any_of(line, [](char c) {
    return IsLetter(c) || (c & 0x80) != 0;
  });
  return is_text || (fields.size() == 1 && line.find(' ') != std::string_view::npos &&
                     std::ranges::count_if(line, IsLetter) > 3);
}

}  // namespace

struct PriceReader::State {
  State(const std::filesystem::path& file, const ImportOptions& options)
      : source(file),
        block(source.Next()),
        table(Recognise(block, file, options)),
        splitter(table.separator),
        row_reader(table, ShiftOfScale(options.scale)),
        plain_rows(table, row_reader, ShiftOfScale(options.scale)) {
    rows.reserve(kRowsAtOnce);
    lines.reserve(kRowsAtOnce);
    format.container = source.Container();
    format.encoding = source.EncodingName();
    format.separator = table.separator;
    format.decimal_comma = table.numbers.decimal_comma;
    format.header_line = table.header_line;
    format.columns = table.columns;
    format.dates = NameOfDates(table.dates, table.first_date);
    format.date_order_open = table.is_order_open;
    format.month_may_be_first = table.month_may_be_first;
    format.year_may_be_first = table.year_may_be_first;
    format.times_may_be_tickers = table.times_may_be_tickers;
    format.zone = table.zone;
  }

  bool NextLine(std::string_view& line) {
    while (!TakeLine(block, line)) {
      if (!rows.empty()) return false;  // their lines are in this block
      block = source.Next();
      if (block.empty()) return false;
    }
    ++line_number;
    return true;
  }

  void Read(std::string_view line) {
    static constexpr PriceRow kBlank;  // copied faster than it is made
    PriceRow& row = rows.emplace_back(kBlank);
    row.line = line_number;
    if (end_error.empty() && plain_rows.Read(line, row)) {
      lines.push_back(line);
      return;
    }
    rows.pop_back();
    if (IsBlankLine(line) || line_number == table.header_line) return;
    try {
      const std::vector<std::string_view>& fields = splitter.Split(line);
      if (IsNoRow(line) || (line_number < table.first_row_line && !row_reader.HasDate(fields))) {
        ++counts.other_lines;
      } else if (row_reader.LacksPrice(fields) && row_reader.HasDate(fields)) {
        CountSkipped();
      } else {
        ReadRow(line, fields);
      }
    } catch (const ImportError& error) {
      throw ImportError("line " + std::to_string(line_number) + ": " + error.what());
    }
  }

  void CountSkipped() {
    if (counts.skipped++ == 0) counts.first_skipped_line = line_number;
  }

  // A comment, a repeated header or a rule of a table.
  bool IsNoRow(std::string_view line) const {
    if (line.starts_with("\xEF\xBB\xBF")) line.remove_prefix(3);  // of a file that was appended
    return line.starts_with('#') || line == table.header ||
           (line.find('-') != std::string_view::npos &&
            line.find_first_not_of("+-=|: \t") == std::string_view::npos);
  }

  void ReadRow(std::string_view line, const std::vector<std::string_view>& fields) {
    PriceRow row;
    try {
      row_reader.Read(fields, row);
    } catch (const ImportError& error) {
      const bool has_date = row_reader.HasDate(fields);
      const bool is_end = has_date ? row_reader.IsCutOff(fields) : LooksLikeFooter(line, fields);
      if (!is_end) throw;
      if (end_error.empty()) {
        end_error = error.what();
        end_line = line_number;
      }
      if (has_date) {
        CountSkipped();
      } else {
        ++counts.other_lines;
      }
      return;
    }
    // What belongs at the end of the file did not end it.
    if (!end_error.empty()) {
      line_number = end_line;
      throw ImportError(end_error);
    }
    row.line = line_number;
    row.ticker = Kept(row.ticker);
    row.period = Kept(row.period);
    rows.push_back(row);
    lines.push_back(line);
  }

  // The fields of a quoted line are gone with the next one.
  std::string_view Kept(std::string_view text) {
    return text.empty() ? text : *kept.emplace(text).first;
  }

  TextSource source;
  std::string_view block;
  TableFormat table;
  LineFields splitter;
  RowReader row_reader;
  PlainRows plain_rows;
  FileFormat format;
  RowCounts counts;
  std::int64_t line_number = 0;
  // Of the first footer or cut off row.
  std::string end_error;
  std::int64_t end_line = 0;
  std::vector<PriceRow> rows;
  std::vector<std::string_view> lines;   // of the rows
  std::unordered_set<std::string> kept;  // tickers and periods
};

PriceReader::PriceReader(const std::filesystem::path& file, const ImportOptions& options)
    : state_(std::make_unique<State>(file, options)) {}

PriceReader::~PriceReader() = default;

const FileFormat& PriceReader::Format() const { return state_->format; }

std::span<const PriceRow> PriceReader::Next() {
  State& state = *state_;
  state.rows.clear();
  state.lines.clear();
  state.kept.clear();
  std::string_view line;
  while (state.rows.size() < kRowsAtOnce && state.NextLine(line)) state.Read(line);
  state.counts.rows += static_cast<std::int64_t>(state.rows.size());
  state.format.price_decimals = state.row_reader.PriceDecimals();
  state.format.encoding = state.source.EncodingName();
  if (!state.row_reader.Zone().empty()) state.format.zone = state.row_reader.Zone();
  return state.rows;
}

std::string_view PriceReader::RawLine(const PriceRow& row) const {
  return state_->lines[static_cast<std::size_t>(&row - state_->rows.data())];
}

const RowCounts& PriceReader::Counts() const { return state_->counts; }

double PriceReader::Progress() const { return state_->source.Progress(); }

}  // namespace velumar
