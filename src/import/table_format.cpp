#include "import/table_format.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "base/dates.h"
#include "base/text.h"
#include "import/column_names.h"
#include "import/column_recognition.h"
#include "import/field_text.h"
#include "import/line_fields.h"
#include "import/number_style.h"
#include "import/sample_table.h"

namespace velumar {

namespace {

using Fields = std::vector<std::string_view>;

std::vector<std::size_t> NumberColumns(const TableFormat& format) {
  std::vector<std::size_t> columns;
  for (std::size_t field = 0; field < kPriceFields; ++field) {
    if (static_cast<PriceField>(field) < PriceField::kOpen || !format.places[field]) continue;
    columns.push_back(*format.places[field]);
  }
  return columns;
}

// Times of one to four digits next to times of five or six are hhmmss without leading zeros.
TimeDigits DigitsOfTimes(const Fields& fields) {
  bool has_short = false;
  bool has_long = false;
  for (const std::string_view field : fields) {
    if (!std::ranges::all_of(field, IsDigit)) continue;
    constexpr std::size_t kHoursAndMinutes = 4;
    if (field.size() <= kHoursAndMinutes && field.size() > 1 && field.starts_with('0')) {
      return TimeDigits::kHoursAndMinutes;
    }
    (field.size() > kHoursAndMinutes ? has_long : has_short) = true;
  }
  return has_long && has_short ? TimeDigits::kWithSeconds : TimeDigits::kHoursAndMinutes;
}

void SetUnixUnit(const Fields& fields, DateStyle& style) {
  style.kind = DateStyle::Kind::kUnix;
  std::int64_t largest = 0;
  for (const std::string_view field : fields) {
    largest = std::max<std::int64_t>(largest, std::abs(ReadUnixNumber(field).value_or(0)));
  }
  // Ticks of 100 ns since the years 1 and 1601 would be Unix times of 1990 and 1974.
  constexpr std::pair<std::int64_t, std::int64_t> kOtherCounts[] = {
      {600'000'000'000'000'000, 660'000'000'000'000'000},
      {120'000'000'000'000'000, 150'000'000'000'000'000}};
  for (const auto& [from, to] : kOtherCounts) {
    if (largest < from || largest > to) continue;
    throw ImportError("the dates seem to count 100 ns from the year 1 or 1601; save them as text");
  }
  constexpr std::int64_t kLast = 10'000'000'000;  // the year 2286
  while (largest / style.per_second >= kLast) style.per_second *= 1000;
}

// Six digits can be yymmdd, but also ddmmyy or mmddyy.
void RequireYearFirst(const Fields& fields, std::string_view title) {
  if (UpperCased(title).find("YYMMDD") != std::string::npos) return;
  const auto ends_with_year = [&](int month_at) {
    return std::ranges::all_of(fields, [&](std::string_view field) {
      const auto two = [&](int at) {
        return std::string(field.substr(static_cast<std::size_t>(at), 2));
      };
      const auto date = DateFromDigits("20" + two(4) + two(month_at) + two(2 - month_at));
      return date.has_value();
    });
  };
  if (!ends_with_year(0) && !ends_with_year(2)) return;
  throw FormatUndecided(
      "The date \"" + std::string(fields.front()) + "\" can be read in several ways.",
      "--date-format, such as \"%y%m%d\"");
}

void DecideDates(const Fields& fields, const ImportOptions& options, TableFormat& format) {
  DateStyle& style = format.dates;
  if (style.kind == DateStyle::Kind::kPattern) return;
  if (style.kind == DateStyle::Kind::kSixDigits) {
    RequireYearFirst(fields, format.columns[*format.Place(PriceField::kDate)].title);
    return;
  }
  const bool is_text = std::ranges::any_of(fields, LooksLikeDateText);
  if (!is_text) {
    SetUnixUnit(fields, style);
    format.zone = "UTC";
    return;
  }
  style.ends_of_days = std::ranges::all_of(fields, [](std::string_view field) {
    const auto moment = ReadDateText(field, DateOrder::kDayMonthYear);
    return moment && moment->time == kEndOfDay;
  });
  if (options.date_order) style.order = *options.date_order;
  format.is_order_open =
      !options.date_order && std::ranges::any_of(fields, [](std::string_view field) {
        return ReadOrderlessDate(field).has_value();
      });
}

// "UTC" for "Date (UTC)", "Gmt time" and "Local time" as they are.
std::string ZoneInTitle(std::string_view title) {
  const std::string upper = UpperCased(title);
  if (upper.find("LOCAL") != std::string::npos) return std::string(title);
  const std::size_t bracket = title.find('(');
  const std::string_view inner =
      bracket == std::string_view::npos ? std::string_view() : title.substr(bracket + 1);
  if (inner.ends_with(')') && inner.find('/') != std::string_view::npos) {
    return std::string(inner.substr(0, inner.size() - 1));
  }
  if (upper.find("UTC") != std::string::npos) return "UTC";
  return upper.find("GMT") != std::string::npos ? std::string(title) : "";
}

void FindZone(TableFormat& format) {
  for (const PriceField field : {PriceField::kTime, PriceField::kDate}) {
    const auto place = format.Place(field);
    if (place && format.zone.empty()) format.zone = ZoneInTitle(format.columns[*place].title);
  }
}

SampleTable SplitLines(std::span<const TextLine> lines, DateStyle& dates) {
  try {
    return SplitSample(lines, dates);
  } catch (const ImportError&) {
    if (dates.kind != DateStyle::Kind::kText) throw;
    // Dates of six digits look like any number, so they are the last resort.
    DateStyle six = dates;
    six.kind = DateStyle::Kind::kSixDigits;
    try {
      SampleTable sample = SplitSample(lines, six);
      dates = six;
      return sample;
    } catch (const ImportError&) {
      // The first error says more.
    }
    throw;
  }
}

void RequireReadable(PriceField field, std::string_view text, std::int64_t line,
                     const ImportOptions& options) {
  const bool is_price = std::ranges::find(kFourPrices, field) != kFourPrices.end();
  try {
    if (is_price && !IsMissing(text) && !LooksLikeNumber(text)) ReadNumber(text, {}, 0);
    // Six digits can be a date in several ways.
    if (field == PriceField::kDate && text.size() > 6 && !options.date_format &&
        !LooksLikeUnixTime(text)) {
      MomentReader({}, TimeDigits::kHoursAndMinutes).Date(text);
    }
  } catch (const ImportError& error) {
    throw ImportError("line " + std::to_string(line) + ": the " + std::string(FieldName(field)) +
                      " " + error.what());
  }
}

// If the first line names all columns, a message about the row below it helps more than one about
// the columns. Throws ImportError if that row is the reason.
void RequireFirstRow(std::span<const TextLine> lines, const ImportOptions& options) {
  if (lines.size() < 2) return;
  for (const char separator : {',', ';', '\t'}) {
    if (lines[0].text.find(separator) == std::string_view::npos) continue;
    LineFields splitter(separator);
    const std::vector<NamedColumn> named = NamedColumns(FieldsOf(splitter, lines[0].text));
    if (std::ranges::find(named, PriceField::kDate, &NamedColumn::field) == named.end() ||
        std::ranges::find(named, PriceField::kClose, &NamedColumn::field) == named.end()) {
      continue;
    }
    const std::vector<std::string> fields = FieldsOf(splitter, lines[1].text);
    for (const NamedColumn& column : named) {
      if (column.column >= fields.size()) continue;
      RequireReadable(column.field, fields[column.column], lines[1].number, options);
    }
  }
}

TableFormat Recognised(std::span<const TextLine> lines, const ImportOptions& options) {
  TableFormat format;
  if (options.date_format) {
    format.dates.kind = DateStyle::Kind::kPattern;
    format.dates.pattern.emplace(*options.date_format);
  }
  std::optional<NumberStyle> numbers;
  if (options.decimal_comma) numbers = NumberStyle{*options.decimal_comma};
  const SampleTable sample = SplitLines(lines, format.dates);
  format.separator = sample.separator;
  format.first_row_line = lines[sample.first_row].number;
  RecogniseColumns(sample, lines, numbers, format);
  const std::size_t date = *format.Place(PriceField::kDate);
  if (!numbers) numbers = StyleOfNumbers(sample, date, NumberColumns(format));
  if (!numbers) {
    throw FormatUndecided("The commas and points of the numbers can be read in two ways.",
                          "--decimal comma or point");
  }
  format.numbers = *numbers;
  const Fields dates = sample.Column(date);
  if (dates.empty()) throw ImportError("no column holds dates");
  format.first_date = std::string(dates.front());
  DecideDates(dates, options, format);
  if (const auto time = format.Place(PriceField::kTime)) {
    format.time_digits = DigitsOfTimes(sample.Column(*time));
  }
  FindZone(format);
  MarkPossibleVolumes(sample, format);
  const auto volume = format.Place(PriceField::kVolume);
  const auto ticks = format.Place(PriceField::kTickVolume);
  format.is_volume_open = volume && ticks && volume != ticks;
  return format;
}

}  // namespace

TableFormat RecogniseTable(std::span<const TextLine> lines, const ImportOptions& options) {
  try {
    return Recognised(lines, options);
  } catch (const FormatUndecided&) {
    throw;
  } catch (const ImportError&) {
    RequireFirstRow(lines, options);
    throw;
  }
}

}  // namespace velumar
