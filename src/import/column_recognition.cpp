#include "import/column_recognition.h"

#include <algorithm>
#include <array>
#include <string>

#include "import/column_names.h"
#include "import/column_values.h"
#include "import/number_style.h"
#include "import/table_header.h"

namespace velumar {

namespace {

using Column = std::optional<std::size_t>;
using Titles = std::vector<std::string>;

bool IsPrice(PriceField field) {
  return field >= PriceField::kOpen && field <= PriceField::kAdjustedClose;
}

// As PlainName returns it.
bool NamesMoments(const std::string& name) {
  constexpr std::array kParts = {"TIME", "DATE", "UNIX", "EPOCH"};
  return std::ranges::any_of(
      kParts, [&](const char* part) { return name.find(part) != std::string::npos; });
}

bool HasVolume(const TableFormat& format) {
  constexpr std::array kVolumes = {PriceField::kVolume, PriceField::kTickVolume,
                                   PriceField::kUpVolume, PriceField::kDownVolume};
  return std::ranges::any_of(kVolumes,
                             [&](PriceField field) { return format.Place(field).has_value(); });
}

class Recognition {
 public:
  Recognition(const SampleTable& sample, std::span<const TextLine> lines, TableFormat& format)
      : sample_(sample), lines_(lines), format_(format), values_(sample, format.dates) {
    format_.width = sample_.width;
    format_.columns.resize(sample_.width);
  }

  void Run(std::optional<NumberStyle> numbers) {
    FindHeader(sample_, lines_, values_, format_);
    AssignByName();
    FindDate();
    if (format_.header_line == 0 || HasForeignTitles()) InferColumns(numbers);
    FindTime();
    IgnoreEndsOfDays();
    UseOnlyVolumeThereIs();
    UseOneCloseForAll();
    RequirePrices();
    RequireNoStrayFields();
  }

 private:
  Column Place(PriceField field) const { return format_.Place(field); }
  bool IsFree(std::size_t column) const {
    return format_.columns[column].field == PriceField::kIgnored;
  }
  void Set(PriceField field, std::size_t column, std::string reason) {
    format_.SetPlace(field, column);
    format_.columns[column].field = field;
    format_.columns[column].reason = std::move(reason);
  }
  void Ignore(PriceField field, const std::string& reason) {
    const Column column = Place(field);
    if (!column) return;
    Set(PriceField::kIgnored, *column, reason);
    format_.SetPlace(PriceField::kIgnored, std::nullopt);
    format_.SetPlace(field, std::nullopt);
  }

  Titles HeaderTitles() const {
    Titles titles;
    for (const ColumnMeaning& column : format_.columns) titles.push_back(column.title);
    return titles;
  }

  // A header in a script whose words we don't know.
  bool HasForeignTitles() const {
    const Titles titles = HeaderTitles();
    const auto foreign = std::ranges::count_if(titles, [](const std::string& title) {
      return !title.empty() && (title.front() & 0x80) != 0;
    });
    return foreign > 3 &&
           std::ranges::none_of(kFourPrices, [&](PriceField f) { return Place(f).has_value(); });
  }

  // A name must fit the values: "Price" above dates is no close.
  bool Fits(PriceField field, std::size_t column) const {
    switch (field) {
      case PriceField::kDate:
        return values_.HaveDate(column) || AreNamedSixDigits(column);
      case PriceField::kTime:
        // A column named Time may hold whole dates.
        return values_.HaveTime(column) && (Place(PriceField::kDate) || !values_.AreDates(column));
      case PriceField::kTicker:
      case PriceField::kPeriod:
        return !values_.AreMissing(column);
      default:
        return values_.HaveNumber(column) || (!IsPrice(field) && values_.AreMissing(column));
    }
  }

  bool AreNamedSixDigits(std::size_t column) const {
    return format_.dates.kind == DateStyle::Kind::kText && values_.AreSixDigitDates(column);
  }

  void AssignByName() {
    if (format_.header_line == 0) return;
    const Titles titles = HeaderTitles();
    for (const NamedColumn& named : NamedColumns(titles)) {
      const Column before = Place(named.field);
      if (before) RefuseTwins(named, *before);
      if (before || !IsFree(named.column) || !Fits(named.field, named.column)) continue;
      Set(named.field, named.column, "named \"" + titles[named.column] + "\"");
    }
    AssignVolumeOfUnit(titles);
  }

  // "Volume BTC", "total_volume"
  void AssignVolumeOfUnit(const Titles& titles) {
    if (HasVolume(format_)) return;
    Column found;
    for (std::size_t i = 0; i < titles.size(); ++i) {
      const std::string name = PlainName(titles[i]);
      if (!name.starts_with("VOLUME") || !IsFree(i) || !values_.AreNumbers(i)) continue;
      // "Volume USD" next to "Volume BTC" is a turnover.
      if (!found || IsCurrency(PlainName(titles[*found]).substr(kVolume.size()))) found = i;
    }
    if (found) Set(PriceField::kVolume, *found, "named \"" + titles[*found] + "\"");
  }

  static constexpr std::string_view kVolume = "VOLUME";
  static bool IsCurrency(std::string_view name) {
    constexpr std::array kCodes = {"USD", "USDT", "USDC", "BUSD", "EUR", "GBP", "JPY"};
    return std::ranges::any_of(kCodes, [&](const char* code) { return name == code; });
  }

  void RefuseTwins(const NamedColumn& named, std::size_t before) const {
    const std::string& title = format_.columns[named.column].title;
    if (!IsPrice(named.field) || before == named.column) return;
    if (PlainName(format_.columns[before].title) != PlainName(title)) return;
    throw ImportError("the header names the column \"" + title + "\" twice");
  }

  void FindDate() {
    if (const Column named = Place(PriceField::kDate)) {
      if (!values_.HaveDate(*named)) format_.dates.kind = DateStyle::Kind::kSixDigits;
      return;
    }
    for (const bool unix : {false, true}) {
      for (std::size_t i = 0; i < sample_.width; ++i) {
        if (!IsFree(i) || !values_.AreDates(i) || values_.AreUnixTimes(i) != unix) continue;
        // Turnovers and volumes can look like Unix times.
        const std::string name = PlainName(format_.columns[i].title);
        if (unix && !name.empty() && !NamesMoments(name)) continue;
        Set(PriceField::kDate, i, "holds dates");
        return;
      }
    }
    throw ImportError("no column holds dates");
  }

  // The column of times is next to the date; the ticker may be on either side of it.
  void FindTime() {
    if (Place(PriceField::kTime)) return;
    const auto after = [&](std::size_t column) {
      return column + (Place(PriceField::kTicker) == column + 1 ? 2 : 1);
    };
    const std::size_t column = after(*Place(PriceField::kDate));
    if (column >= sample_.width || !IsFree(column)) return;
    if (FindTimeNextToNumber(column)) return;
    const bool before_open = Place(PriceField::kOpen) == after(column) && format_.header_line == 0;
    if (!values_.AreClockTimes(column) && !(before_open && values_.AreTimes(column))) return;
    Set(PriceField::kTime, column, "holds times");
    format_.times_may_be_tickers = format_.header_line == 0 && values_.AreDigits(column);
  }

  // Two columns of digits between date and prices: a ticker such as 0700 looks like a time, but
  // there are more times than tickers.
  bool FindTimeNextToNumber(std::size_t first) {
    const std::size_t second = first + 1;
    if (format_.header_line > 0 || Place(PriceField::kTicker)) return false;
    if (Place(PriceField::kOpen) != second + 1 || !IsFree(second)) return false;
    const bool is_first = values_.Different(first) > values_.Different(second);
    const std::size_t time = is_first ? first : second;
    const std::size_t ticker = is_first ? second : first;
    if (!values_.AreClockTimes(time) || !values_.AreDigits(ticker)) return false;
    constexpr std::size_t kTimesOfTicker = 4;
    if (values_.Different(ticker) * kTimesOfTicker > values_.Different(time)) return false;
    Set(PriceField::kTime, time, "holds times");
    Set(PriceField::kTicker, ticker, "a number next to the times");
    return true;
  }

  // 24:00 of a day is 0:00 of the next one, but the bar that it labels in every row is the day's.
  void IgnoreEndsOfDays() {
    const Column time = Place(PriceField::kTime);
    if (!time || !values_.AreEndsOfDays(*time)) return;
    Ignore(PriceField::kTime, "the end of the day in every row");
  }

  // The first four columns of numbers after the date of which one is the highest and one the
  // lowest in each row, in one of the two usual orders.
  void InferColumns(std::optional<NumberStyle> numbers) {
    const std::size_t date = *Place(PriceField::kDate);
    std::vector<std::size_t> columns;
    for (std::size_t i = date + 1; i < sample_.width; ++i) {
      if (values_.AreNumbers(i)) columns.push_back(i);
    }
    const NumberStyle style =
        numbers ? *numbers : StyleOfNumbers(sample_, date, columns).value_or(NumberStyle{});
    for (std::size_t i = 0; i + 3 < columns.size() && !Place(PriceField::kClose); ++i) {
      if (columns[i + 3] == columns[i] + 3) InferPrices(columns[i], style);
    }
    if (format_.header_line == 0 && columns.size() == 1 && !Place(PriceField::kClose)) {
      Set(PriceField::kClose, columns[0], "the only number");
    }
    InferTicker();
  }

  // Before the date, with a period between them, or after it, perhaps with the time between them.
  void InferTicker() {
    const std::size_t date = *Place(PriceField::kDate);
    if (date > 0 && !values_.AreNumbers(0)) {
      Set(PriceField::kTicker, 0, "a text before the date");
      if (date > 1) Set(PriceField::kPeriod, 1, "between the ticker and the date");
      return;
    }
    const std::size_t end = Place(PriceField::kOpen).value_or(sample_.width);
    for (std::size_t column = date + 1; column < std::min(date + 3, end); ++column) {
      if (!IsFree(column) || !values_.AreWords(column)) continue;
      Set(PriceField::kTicker, column, "a text after the date");
      return;
    }
  }

  void InferPrices(std::size_t first, NumberStyle style) {
    const bool high_first = values_.ArePrices(first, PriceOrder::kHighFirst, style);
    const bool low_first = values_.ArePrices(first, PriceOrder::kLowFirst, style);
    if (!high_first && !low_first) return;  // both if all prices of a bar are equal
    const std::string second = high_first ? "the highest" : "the lowest";
    Set(PriceField::kOpen, first, "the first of four prices");
    Set(high_first ? PriceField::kHigh : PriceField::kLow, first + 1, second + " of four prices");
    Set(high_first ? PriceField::kLow : PriceField::kHigh, first + 2,
        std::string(high_first ? "the lowest" : "the highest") + " of four prices");
    Set(PriceField::kClose, first + 3, "the last of four prices");
    InferVolume(first + 4, style);
  }

  // The next column, unless its numbers could be prices. What further ones mean is not
  // known.
  void InferVolume(std::size_t column, NumberStyle style) {
    for (; column < sample_.width && values_.AreNumbers(column); ++column) {
      if (values_.AreNearPrices(column, *Place(PriceField::kClose), style)) continue;
      Set(PriceField::kVolume, column, "the first number after the prices");
      return;
    }
  }

  // A total is better than its parts, and these are better than ticks.
  void UseOnlyVolumeThereIs() {
    if (Place(PriceField::kVolume)) {
      Ignore(PriceField::kUpVolume, "part of the volume");
      Ignore(PriceField::kDownVolume, "part of the volume");
    } else if (!Place(PriceField::kUpVolume)) {
      format_.SetPlace(PriceField::kVolume, Place(PriceField::kTickVolume));
    }
  }

  // A file with a date and a close has bars of one price.
  void UseOneCloseForAll() {
    const Column close = Place(PriceField::kClose);
    if (!close || Place(PriceField::kOpen) || Place(PriceField::kHigh) || Place(PriceField::kLow)) {
      return;
    }
    for (const PriceField field : kFourPrices) format_.SetPlace(field, close);
    format_.columns[*close].reason += "; also open, high and low, which the file lacks";
  }

  void RequirePrices() const {
    std::string missing;
    for (const PriceField field : kFourPrices) {
      if (Place(field)) continue;
      missing += (missing.empty() ? "" : ", ") + std::string(FieldName(field));
    }
    if (missing.empty()) return;
    throw ImportError("no column holds the " + missing +
                      (format_.header_line > 0
                           ? " (line " + std::to_string(format_.header_line) + " names the columns)"
                           : "; add a first line that names the columns"));
  }

  // More values than names: a decimal comma may have cut numbers in two. One more is harmless if
  // it follows a column that isn't used.
  void RequireNoStrayFields() const {
    if (format_.header_line == 0 || sample_.width <= format_.width) return;
    const std::size_t open = *Place(PriceField::kOpen);
    const bool in_order = Place(PriceField::kHigh) == open + 1 &&
                          Place(PriceField::kLow) == open + 2 &&
                          (values_.ArePrices(open, PriceOrder::kHighFirst, {false}) ||
                           values_.ArePrices(open, PriceOrder::kHighFirst, {true}));
    if (sample_.width == format_.width + 1 && IsFree(format_.width - 1) && in_order) return;
    throw ImportError("line " + std::to_string(lines_[sample_.first_row].number) + ": has " +
                      std::to_string(sample_.width) + " fields, the header has " +
                      std::to_string(format_.width));
  }

  const SampleTable& sample_;
  std::span<const TextLine> lines_;
  TableFormat& format_;
  ColumnValues values_;
};

}  // namespace

void RecogniseColumns(const SampleTable& sample, std::span<const TextLine> lines,
                      std::optional<NumberStyle> numbers, TableFormat& format) {
  Recognition(sample, lines, format).Run(numbers);
}

void MarkPossibleVolumes(const SampleTable& sample, TableFormat& format) {
  if (HasVolume(format)) return;
  const ColumnValues values(sample, format.dates);
  const std::size_t close = *format.Place(PriceField::kClose);
  for (std::size_t i = 0; i < format.columns.size(); ++i) {
    ColumnMeaning& column = format.columns[i];
    if (column.field != PriceField::kIgnored || !column.reason.empty()) continue;
    const bool are_moments = !values.AreUnixTimes(i) || NamesMoments(PlainName(column.title));
    if (values.AreDates(i) && are_moments) continue;
    column.may_be_volume =
        values.MayBeVolumes(i, format.numbers) && !values.AreNearPrices(i, close, format.numbers);
    if (column.may_be_volume) column.reason = "may be the volume";
  }
}

}  // namespace velumar
