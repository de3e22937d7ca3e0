#include "import/price_reader.h"

#include <algorithm>
#include <array>

#include "import/column_names.h"
#include "import/line_fields.h"
#include "import/table_format.h"
#include "import/text_source.h"

namespace velumar {

namespace {

constexpr std::size_t kRowsAtOnce = 1024;
constexpr std::size_t kSampleLines = 2000;

bool IsBlank(std::string_view line) {
  return line.find_first_not_of(" \t") == std::string_view::npos;
}

int ShiftOfScale(int scale) {
  int shift = 0;
  for (; scale >= 10; scale /= 10) ++shift;
  return shift;
}

std::string NameOfDates(const DateStyle& style) {
  if (style.kind == DateStyle::Kind::kPattern) return style.pattern->Text();
  if (style.kind == DateStyle::Kind::kUnix) {
    const std::int64_t n = style.per_second;
    return std::string("Unix time in ") + (n == 1           ? "s"
                                           : n == 1000      ? "ms"
                                           : n == 1'000'000 ? "µs"
                                                            : "ns");
  }
  return "year-month-day";
}

}  // namespace

struct PriceReader::State {
  State(const std::filesystem::path& file, const ImportOptions& options)
      : source(file),
        block(source.Next()),
        table(Recognise(block, options)),
        splitter(table.separator),
        shift(ShiftOfScale(options.scale)) {
    format.container = source.Container();
    format.encoding = source.EncodingName();
    format.separator = table.separator;
    format.decimal_comma = table.numbers.decimal_comma;
    format.header_line = table.header_line;
    format.columns = table.columns;
    format.dates = NameOfDates(table.dates);
    format.date_order_open = table.is_order_open;
    if (table.dates.kind == DateStyle::Kind::kUnix) format.zone = "UTC";
  }

  static TableFormat Recognise(std::string_view text, const ImportOptions& options) {
    std::vector<TextLine> lines;
    std::string_view line;
    for (std::int64_t number = 1; lines.size() < kSampleLines && TakeLine(text, line); ++number) {
      if (!IsBlank(line)) lines.push_back({number, line});
    }
    if (lines.empty()) throw ImportError("the file is empty");
    return RecogniseTable(lines, options);
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

  std::string_view FieldAt(PriceField field) const {
    const auto place = table.Place(field);
    return place && *place < fields->size() ? (*fields)[*place] : std::string_view();
  }

  template <typename Read>
  auto Value(PriceField field, Read read) const {
    try {
      return read(FieldAt(field));
    } catch (const ImportError& error) {
      throw ImportError("the " + std::string(FieldName(field)) + " " + error.what());
    }
  }

  float Price(PriceField field) {
    const PriceNumber number =
        Value(field, [&](std::string_view text) { return ReadNumber(text, table.numbers, shift); });
    if (number.decimals > format.price_decimals) {
      format.price_decimals = std::max(format.price_decimals, DecimalsOf(number.value));
    }
    return number.value;
  }

  float Quantity(PriceField field) const {
    if (!table.Place(field) || IsMissing(FieldAt(field))) return 0;
    return Value(field, [&](std::string_view text) { return ReadNumber(text, table.numbers, 0); })
        .value;
  }

  PriceRow ReadRow() {
    PriceRow row;
    row.line = line_number;
    const Moment moment = Value(PriceField::kDate,
                                [&](std::string_view text) { return ReadDate(text, table.dates); });
    row.bar.date = moment.date;
    row.bar.time = moment.time.value_or(0);
    row.utc_offset = moment.utc_offset;
    if (table.Place(PriceField::kTime)) {
      const Moment own = Value(PriceField::kTime, [&](std::string_view text) {
        return ReadTime(text, table.time_digits);
      });
      if (row.bar.time != 0 && row.bar.time != *own.time) {
        throw ImportError("the time in the date differs from the one in the column of times");
      }
      row.bar.time = *own.time;
      if (own.utc_offset) row.utc_offset = own.utc_offset;
    }
    row.bar.open = Price(PriceField::kOpen);
    row.bar.high = Price(PriceField::kHigh);
    row.bar.low = Price(PriceField::kLow);
    row.bar.close = Price(PriceField::kClose);
    row.adjusted_close = row.bar.close;
    if (table.Place(PriceField::kAdjustedClose) &&
        !IsMissing(FieldAt(PriceField::kAdjustedClose))) {
      row.adjusted_close = Price(PriceField::kAdjustedClose);
    }
    row.bar.volume = Quantity(PriceField::kVolume);
    row.bar.open_interest = Quantity(PriceField::kOpenInterest);
    row.ticker = FieldAt(PriceField::kTicker);
    row.period = FieldAt(PriceField::kPeriod);
    return row;
  }

  bool HasNoPrice() const {
    return std::ranges::any_of(
        std::array{PriceField::kOpen, PriceField::kHigh, PriceField::kLow, PriceField::kClose},
        [&](PriceField field) { return IsMissing(FieldAt(field)); });
  }

  void Skip() {
    if (counts.skipped++ == 0) counts.first_skipped_line = line_number;
  }

  void Read(std::string_view line) {
    if (IsBlank(line)) return;
    if (line_number == table.header_line) return;
    try {
      fields = &splitter.Split(line);
      const auto first = FieldAt(PriceField::kDate);
      if (counts.rows == 0 && rows.empty() && !LooksLikeRow(first)) return Skip();
      if (HasNoPrice()) return Skip();
      rows.push_back(ReadRow());
      lines.push_back(line);
    } catch (const ImportError& error) {
      throw ImportError("line " + std::to_string(line_number) + ": " + error.what());
    }
  }

  bool LooksLikeRow(std::string_view date) const {
    try {
      ReadDate(date, table.dates);
      return true;
    } catch (const ImportError&) {
      return false;
    }
  }

  TextSource source;
  std::string_view block;
  TableFormat table;
  LineFields splitter;
  int shift = 0;
  FileFormat format;
  RowCounts counts;
  std::int64_t line_number = 0;
  const std::vector<std::string_view>* fields = nullptr;
  std::vector<PriceRow> rows;
  std::vector<std::string_view> lines;
};

PriceReader::PriceReader(const std::filesystem::path& file, const ImportOptions& options)
    : state_(std::make_unique<State>(file, options)) {}

PriceReader::~PriceReader() = default;

const FileFormat& PriceReader::Format() const { return state_->format; }

std::span<const PriceRow> PriceReader::Next() {
  State& state = *state_;
  state.rows.clear();
  state.lines.clear();
  std::string_view line;
  while (state.rows.size() < kRowsAtOnce && state.NextLine(line)) state.Read(line);
  state.counts.rows += static_cast<std::int64_t>(state.rows.size());
  return state.rows;
}

std::string_view PriceReader::RawLine(const PriceRow& row) const {
  return state_->lines[static_cast<std::size_t>(&row - state_->rows.data())];
}

const RowCounts& PriceReader::Counts() const { return state_->counts; }

double PriceReader::Progress() const { return state_->source.Progress(); }

}  // namespace velumar
