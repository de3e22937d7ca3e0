#include "import/row_reader.h"

#include <algorithm>
#include <array>
#include <cstdlib>

#include "import/column_names.h"
#include "import/field_text.h"
#include "import/price_number.h"

namespace velumar {

namespace {

std::string OffsetText(int minutes) {
  if (minutes == 0) return "UTC";
  const auto two = [](int number) { return (number < 10 ? "0" : "") + std::to_string(number); };
  const int size = std::abs(minutes);
  return (minutes < 0 ? "-" : "+") + two(size / 60) + ":" + two(size % 60);
}

// Calls `read`; errors begin with the name of the field.
template <typename Read>
auto Named(PriceField field, Read read) {
  try {
    return read();
  } catch (const ImportError& error) {
    throw ImportError("the " + std::string(FieldName(field)) + " " + error.what());
  }
}

bool HasText(std::string_view field) { return std::ranges::any_of(field, IsLetter); }

}  // namespace

RowReader::RowReader(const TableFormat& format, int shift)
    : format_(format), shift_(shift), moments_(format.dates, format.time_digits) {
  for (const auto& place : format.places) {
    if (place) needed_ = std::max(needed_, *place + 1);
  }
}

bool RowReader::HasDate(const Fields& fields) {
  const std::size_t place = *format_.Place(PriceField::kDate);
  if (place >= fields.size()) return false;
  try {
    moments_.Date(fields[place]);
    return true;
  } catch (const ImportError&) {
    return false;
  }
}

bool RowReader::LacksPrice(const Fields& fields) const {
  // A note instead of prices, such as a dividend.
  const std::size_t open = *format_.Place(PriceField::kOpen);
  if (fields.size() < needed_) return open < fields.size() && HasText(fields[open]);
  return std::ranges::any_of(
      kFourPrices, [&](PriceField field) { return IsMissing(fields[*format_.Place(field)]); });
}

void RowReader::Read(const Fields& fields, PriceRow& row) {
  RequireWidth(fields);
  const auto time = format_.Place(PriceField::kTime);
  ReadMoment(fields[*format_.Place(PriceField::kDate)], time ? fields[*time] : "", row);
  row.bar.close = Price(fields, PriceField::kClose);
  row.bar.open = Price(fields, PriceField::kOpen);
  row.bar.high = Price(fields, PriceField::kHigh);
  row.bar.low = Price(fields, PriceField::kLow);
  row.adjusted_close = row.bar.close;
  const auto adjusted = format_.Place(PriceField::kAdjustedClose);
  if (adjusted && !IsMissing(fields[*adjusted])) {
    row.adjusted_close = Price(fields, PriceField::kAdjustedClose);
  }
  row.bar.volume = Quantity(fields, PriceField::kVolume);
  if (format_.Place(PriceField::kUpVolume)) {
    row.bar.volume =
        Quantity(fields, PriceField::kUpVolume) + Quantity(fields, PriceField::kDownVolume);
  }
  row.bar.open_interest = Quantity(fields, PriceField::kOpenInterest);
  if (const auto ticker = format_.Place(PriceField::kTicker)) row.ticker = fields[*ticker];
  if (const auto period = format_.Place(PriceField::kPeriod)) row.period = fields[*period];
}

void RowReader::RequireWidth(const Fields& fields) const {
  const std::size_t most = format_.columns.size();
  const bool too_long = fields.size() > most &&
                        std::any_of(fields.begin() + static_cast<std::ptrdiff_t>(most),
                                    fields.end(), [](std::string_view f) { return !f.empty(); });
  if (fields.size() >= needed_ && !too_long) return;
  throw ImportError("has " + std::to_string(fields.size()) + " fields, the " +
                    (format_.header_line > 0 ? "header has " : "other rows have ") +
                    std::to_string(format_.width));
}

void RowReader::ReadMoment(std::string_view date, std::string_view time, PriceRow& row) {
  Moment moment = Named(PriceField::kDate, [&] { return moments_.Date(date); });
  if (format_.Place(PriceField::kTime)) {
    const Moment own = Named(PriceField::kTime, [&] { return moments_.Time(time); });
    // Many files repeat the date as "2020-01-02 00:00" next to the real time.
    if (moment.time.value_or(0) != 0 && moment.time != own.time) {
      throw ImportError("the time in the date differs from the one in its own column");
    }
    moment.time = own.time;
    MoveMidnight(moment);
    if (own.utc_offset) moment.utc_offset = own.utc_offset;
    if (!own.zone.empty()) moment.zone = own.zone;
  }
  row.bar.date = moment.date;
  row.bar.time = moment.time.value_or(0);
  row.utc_offset = moment.utc_offset;
  if (has_zone_) return;
  has_zone_ = true;
  zone_ = moment.utc_offset ? OffsetText(*moment.utc_offset) : std::string(moment.zone);
}

bool RowReader::ReadUsualMoment(std::string_view date, std::string_view time, PriceRow& row) {
  if (moments_.TakeNext(date, time, row.bar)) return true;
  try {
    ReadMoment(date, time, row);
    return true;
  } catch (const ImportError&) {
    return false;
  }
}

float RowReader::Price(const Fields& fields, PriceField field) {
  const std::string_view text = fields[*format_.Place(field)];
  const PriceNumber number = Named(field, [&] {
    // 112'165 can also be 112 and 16.5 thirty-seconds.
    const char decimal = format_.numbers.decimal_comma ? ',' : '.';
    if (text.find('\'') != std::string_view::npos && text.find(decimal) == std::string_view::npos) {
      throw ImportError("\"" + std::string(text) + "\" may not be a decimal number");
    }
    const PriceNumber read = ReadNumber(text, format_.numbers, shift_);
    // Prices in thousands and millions exist; other letters may mean bid, traded, ...
    constexpr int kMillion = 6;
    if (read.magnitude % 3 != 0 || read.magnitude > kMillion) {
      throw ImportError("\"" + std::string(text) + "\" may not be a decimal number");
    }
    return read;
  });
  NoteDecimals(number, text);
  return number.value;
}

void RowReader::RaiseDecimals(const PriceNumber& number, std::string_view text) {
  const auto zeros = static_cast<int>(text.size() - text.find_last_not_of('0') - 1);
  if (number.decimals - zeros <= price_decimals_) return;
  price_decimals_ = std::max(price_decimals_, DecimalsOf(number.value));
}

float RowReader::Quantity(const Fields& fields, PriceField field) const {
  const auto place = format_.Place(field);
  if (!place || IsMissing(fields[*place])) return 0;
  return Named(field, [&] { return ReadNumber(fields[*place], format_.numbers, 0); }).value;
}

}  // namespace velumar
