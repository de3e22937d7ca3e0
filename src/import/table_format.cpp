#include "import/table_format.h"

#include <algorithm>

#include "base/number_text.h"
#include "base/text.h"
#include "import/column_names.h"
#include "import/field_text.h"
#include "import/number_style.h"
#include "import/sample_table.h"

namespace velumar {

namespace {

using Column = std::optional<std::size_t>;

bool IsPrice(PriceField field) {
  return field >= PriceField::kOpen && field <= PriceField::kAdjustedClose;
}

template <typename Is>
bool MostAre(const std::vector<std::string_view>& fields, Is is) {
  const auto count = static_cast<std::size_t>(std::ranges::count_if(fields, is));
  return !fields.empty() && count * 10 >= fields.size() * 9;
}

// Finds the columns of a sample.
class Recognition {
 public:
  Recognition(const SampleTable& sample, std::span<const TextLine> lines,
              const ImportOptions& options, TableFormat& format)
      : sample_(sample), lines_(lines), options_(options), format_(format) {
    format_.columns.resize(sample_.width);
  }

  void Run() {
    FindHeader();
    if (format_.header_line > 0) AssignByName();
    FindDate();
    if (format_.header_line == 0) InferColumns();
    FindTime();
    UseOneCloseForAll();
    RequirePrices();
  }

 private:
  Column Place(PriceField field) const { return format_.Place(field); }

  void Set(PriceField field, std::size_t column, std::string reason) {
    format_.places[static_cast<std::size_t>(field)] = column;
    format_.columns[column].field = field;
    format_.columns[column].reason = std::move(reason);
  }

  bool IsFree(std::size_t column) const {
    return format_.columns[column].field == PriceField::kIgnored;
  }

  // The line before the first row that names the most columns, at least two.
  void FindHeader() {
    std::size_t most = 1;
    for (std::size_t i = 0; i < sample_.first_row; ++i) {
      std::vector<std::string> titles = sample_.lines[i];
      if (titles.front().starts_with('#')) {
        titles.front() = std::string(Stripped(std::string_view(titles.front()).substr(1)));
        if (titles.front().empty() && format_.separator == ' ') titles.erase(titles.begin());
      }
      const std::size_t named = NamedColumns(titles).size();
      if (named <= most) continue;
      most = named;
      format_.header_line = lines_[i].number;
      format_.header = std::string(lines_[i].text);
      SetTitles(std::move(titles));
    }
  }

  // Rows may have a number in front that the header doesn't name, headers an empty end.
  void SetTitles(std::vector<std::string> titles) {
    while (titles.size() > sample_.width && titles.back().empty()) titles.pop_back();
    if (titles.size() + 1 == sample_.width && IsRowNumber(0)) titles.insert(titles.begin(), "");
    titles.resize(std::max(titles.size(), sample_.width));
    format_.columns.assign(titles.size(), {});
    for (std::size_t i = 0; i < titles.size(); ++i) format_.columns[i].title = titles[i];
  }

  bool IsRowNumber(std::size_t column) const {
    const auto fields = sample_.Column(column);
    for (std::size_t i = 1; i < fields.size(); ++i) {
      const auto before = ExactNumber<std::int64_t>(fields[i - 1]);
      const auto number = ExactNumber<std::int64_t>(fields[i]);
      if (!before || !number || *number != *before + 1) return false;
    }
    return !fields.empty() && ExactNumber<std::int64_t>(fields[0]).has_value();
  }

  bool IsDateColumn(std::size_t column) const {
    return MostAre(sample_.Column(column),
                   [&](std::string_view field) { return LooksLikeDate(field, format_.dates); });
  }
  bool IsNumberColumn(std::size_t column) const {
    return MostAre(sample_.Column(column), LooksLikeNumber);
  }
  bool IsTimeColumn(std::size_t column) const {
    return MostAre(sample_.Column(column), [](std::string_view field) {
      return ReadTimeText(field, TimeDigits::kWithSeconds).has_value();
    });
  }

  // A name must fit the values: "Price" above dates is no close.
  bool Fits(PriceField field, std::size_t column) const {
    const auto fields = sample_.Column(column);
    if (field == PriceField::kDate) return IsDateColumn(column);
    if (field == PriceField::kTime) return IsTimeColumn(column);
    if (field == PriceField::kTicker || field == PriceField::kPeriod) return true;
    return fields.empty() ? !IsPrice(field) : IsNumberColumn(column);
  }

  void AssignByName() {
    std::vector<std::string> titles;
    for (const ColumnMeaning& column : format_.columns) titles.push_back(column.title);
    for (const NamedColumn& named : NamedColumns(titles)) {
      const Column before = Place(named.field);
      if (before) {
        RefuseTwins(named, *before);
        continue;
      }
      if (!IsFree(named.column) || !Fits(named.field, named.column)) continue;
      Set(named.field, named.column, "named \"" + titles[named.column] + "\"");
    }
    if (Place(PriceField::kVolume) || Place(PriceField::kTickVolume)) return;
    for (std::size_t i = 0; i < titles.size(); ++i) {
      if (!PlainName(titles[i]).starts_with("VOLUME") || !IsFree(i) || !IsNumberColumn(i)) continue;
      Set(PriceField::kVolume, i, "named \"" + titles[i] + "\"");
      return;
    }
  }

  void RefuseTwins(const NamedColumn& named, std::size_t before) const {
    const std::string& title = format_.columns[named.column].title;
    if (!IsPrice(named.field) || before == named.column) return;
    if (PlainName(format_.columns[before].title) != PlainName(title)) return;
    throw ImportError("the header names the column \"" + title + "\" twice");
  }

  // A column named Time may hold whole dates.
  void FindDate() {
    if (Place(PriceField::kDate)) return;
    for (const bool unix : {false, true}) {
      for (std::size_t i = 0; i < sample_.width; ++i) {
        if (!IsFree(i) || !IsDateColumn(i)) continue;
        if (MostAre(sample_.Column(i), LooksLikeUnixTime) != unix) continue;
        Set(PriceField::kDate, i, "holds dates");
        return;
      }
    }
    throw ImportError("no column holds dates");
  }

  // The column next to the date that holds times.
  void FindTime() {
    const std::size_t date = *Place(PriceField::kDate);
    if (Place(PriceField::kTime) || date + 1 >= sample_.width || !IsFree(date + 1)) return;
    const auto fields = sample_.Column(date + 1);
    const bool has_colons = MostAre(
        fields, [](std::string_view field) { return field.find(':') != std::string_view::npos; });
    const bool before_open = Place(PriceField::kOpen) == date + 2 && format_.header_line == 0;
    if (!IsTimeColumn(date + 1) || !(has_colons || before_open)) return;
    Set(PriceField::kTime, date + 1, "holds times");
  }

  // Open, high, low and close are the first four columns of numbers after the date of which the
  // second is never below and the third never above the others.
  void InferColumns() {
    const std::size_t date = *Place(PriceField::kDate);
    std::vector<std::size_t> numbers;
    for (std::size_t i = date + 1; i < sample_.width; ++i) {
      if (IsNumberColumn(i)) numbers.push_back(i);
    }
    const NumberStyle style = StyleOfNumbers(sample_, numbers);
    for (std::size_t i = 0; i + 3 < numbers.size(); ++i) {
      if (numbers[i + 3] != numbers[i] + 3 || !ArePrices(numbers[i], style)) continue;
      for (std::size_t k = 0; k < 4; ++k) {
        static constexpr PriceField kPrices[] = {PriceField::kOpen, PriceField::kHigh,
                                                 PriceField::kLow, PriceField::kClose};
        Set(kPrices[k], numbers[i] + k,
            "the second of four prices is the highest, the third the lowest");
      }
      InferVolume(numbers[i + 3] + 1, style);
      break;
    }
    if (!Place(PriceField::kClose) && numbers.size() == 1) {
      Set(PriceField::kClose, numbers[0], "the only number");
    }
    if (date > 0 && !IsNumberColumn(0)) Set(PriceField::kTicker, 0, "a text before the date");
    if (date > 1 && Place(PriceField::kTicker)) Set(PriceField::kPeriod, 1, "after the ticker");
  }

  bool ArePrices(std::size_t first, NumberStyle style) const {
    for (std::size_t i = 0; i < sample_.lines.size(); ++i) {
      if (!sample_.is_row[i] || sample_.lines[i].size() < first + 4) continue;
      std::array<float, 4> prices{};
      for (std::size_t k = 0; k < prices.size(); ++k) {
        const std::string& field = sample_.lines[i][first + k];
        if (IsMissing(field)) return true;
        prices[k] = ReadNumber(field, style, 0).value;
      }
      const auto [low, high] = std::ranges::minmax(prices);
      if (prices[1] != high || prices[2] != low) return false;
    }
    return true;
  }

  // The next column, unless its numbers are as large as the prices.
  void InferVolume(std::size_t column, NumberStyle style) {
    for (; column < sample_.width && IsNumberColumn(column); ++column) {
      if (IsNearTheClose(column, style)) continue;
      Set(PriceField::kVolume, column, "the first number after the prices");
      return;
    }
  }

  bool IsNearTheClose(std::size_t column, NumberStyle style) const {
    const std::size_t close = *Place(PriceField::kClose);
    for (std::size_t i = 0; i < sample_.lines.size(); ++i) {
      const std::vector<std::string>& fields = sample_.lines[i];
      if (!sample_.is_row[i] || fields.size() <= column) continue;
      if (IsMissing(fields[column]) || IsMissing(fields[close])) continue;
      const float value = ReadNumber(fields[column], style, 0).value;
      const float price = ReadNumber(fields[close], style, 0).value;
      if (value < price / 2 || value > price * 2) return false;
    }
    return true;
  }

  // A file with a date and a close has bars of one price.
  void UseOneCloseForAll() {
    const Column close = Place(PriceField::kClose);
    if (!close || Place(PriceField::kOpen) || Place(PriceField::kHigh) || Place(PriceField::kLow)) {
      return;
    }
    for (const PriceField field : {PriceField::kOpen, PriceField::kHigh, PriceField::kLow}) {
      format_.places[static_cast<std::size_t>(field)] = close;
    }
    format_.columns[*close].reason += "; also open, high and low, which the file lacks";
  }

  void RequirePrices() const {
    std::string missing;
    for (const PriceField field :
         {PriceField::kOpen, PriceField::kHigh, PriceField::kLow, PriceField::kClose}) {
      if (Place(field)) continue;
      missing += (missing.empty() ? "" : ", ") + std::string(FieldName(field));
    }
    if (missing.empty()) return;
    throw ImportError("no column holds the " + missing +
                      (format_.header_line == 0 ? "; add a line that names the columns" : ""));
  }

  const SampleTable& sample_;
  std::span<const TextLine> lines_;
  const ImportOptions& options_;
  TableFormat& format_;
};

std::vector<std::size_t> NumberColumns(const TableFormat& format) {
  std::vector<std::size_t> columns;
  for (std::size_t field = 0; field < kPriceFields; ++field) {
    if (static_cast<PriceField>(field) < PriceField::kOpen || !format.places[field]) continue;
    columns.push_back(*format.places[field]);
  }
  return columns;
}

// Times of one to four digits next to times of five or six are hhmmss without leading zeros.
TimeDigits DigitsOfTimes(const std::vector<std::string_view>& fields) {
  bool has_short = false;
  bool has_long = false;
  for (const std::string_view field : fields) {
    if (field.find_first_not_of("0123456789") != std::string_view::npos) continue;
    if (field.size() > 4) has_long = true;
    if (field.size() <= 4) {
      if (field.size() > 1 && field.starts_with('0')) return TimeDigits::kHoursAndMinutes;
      has_short = true;
    }
  }
  return has_long && has_short ? TimeDigits::kWithSeconds : TimeDigits::kHoursAndMinutes;
}

void DecideDates(const std::vector<std::string_view>& fields, const ImportOptions& options,
                 TableFormat& format) {
  DateStyle& style = format.dates;
  if (style.kind == DateStyle::Kind::kPattern) return;
  const bool is_text = std::ranges::any_of(fields, [](std::string_view field) {
    return ReadDateText(field, DateOrder::kDayMonthYear).has_value();
  });
  if (!is_text) {
    style.kind = DateStyle::Kind::kUnix;
    std::int64_t largest = 0;
    for (const std::string_view field : fields) {
      largest = std::max(largest, std::abs(ReadUnixNumber(field).value_or(0)));
    }
    constexpr std::int64_t kLast = 10'000'000'000;
    while (largest / style.per_second >= kLast) style.per_second *= 1000;
    return;
  }
  if (options.date_order) style.order = *options.date_order;
  format.is_order_open =
      !options.date_order && std::ranges::any_of(fields, [](std::string_view field) {
        return OrderlessNumbers(field).has_value();
      });
}

}  // namespace

TableFormat RecogniseTable(std::span<const TextLine> lines, const ImportOptions& options) {
  TableFormat format;
  if (options.date_format) {
    format.dates.kind = DateStyle::Kind::kPattern;
    format.dates.pattern.emplace(*options.date_format);
  }
  const SampleTable sample = SplitSample(lines, format.dates);
  format.separator = sample.separator;
  format.first_row = sample.first_row;
  Recognition(sample, lines, options, format).Run();
  format.numbers = StyleOfNumbers(sample, NumberColumns(format));
  DecideDates(sample.Column(*format.Place(PriceField::kDate)), options, format);
  if (const auto time = format.Place(PriceField::kTime)) {
    format.time_digits = DigitsOfTimes(sample.Column(*time));
  }
  const auto volume = format.Place(PriceField::kVolume);
  format.is_volume_open = volume && format.Place(PriceField::kTickVolume);
  return format;
}

}  // namespace velumar
