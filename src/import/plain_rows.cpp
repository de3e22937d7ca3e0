#include "import/plain_rows.h"

#include <algorithm>
#include <cstring>

#include "import/price_number.h"

namespace velumar {

PlainRows::PlainRows(const TableFormat& format, RowReader& reader, int shift)
    : format_(format),
      reader_(reader),
      shift_(shift),
      decimal_(format.numbers.decimal_comma ? ',' : '.'),
      has_time_(format.Place(PriceField::kTime).has_value()),
      has_adjusted_(format.Place(PriceField::kAdjustedClose).has_value()) {
  const bool one_price = format.Place(PriceField::kOpen) == format.Place(PriceField::kClose);
  const bool has_parts = format.Place(PriceField::kUpVolume).has_value();
  if (one_price || has_parts || format.separator == ' ') return;  // no steps: no plain rows
  for (std::size_t i = 0; i < format.columns.size(); ++i) steps_.push_back(StepOf(i));
}

PlainRows::Step PlainRows::StepOf(std::size_t column) const {
  using Kind = Step::Kind;
  const std::pair<PriceField, Step> steps[] = {
      {PriceField::kDate, {Kind::kDate}},
      {PriceField::kTime, {Kind::kTime}},
      {PriceField::kTicker, {Kind::kTicker}},
      {PriceField::kPeriod, {Kind::kPeriod}},
      {PriceField::kOpen, {Kind::kPrice, &Bar::open}},
      {PriceField::kHigh, {Kind::kPrice, &Bar::high}},
      {PriceField::kLow, {Kind::kPrice, &Bar::low}},
      {PriceField::kClose, {Kind::kPrice, &Bar::close}},
      {PriceField::kAdjustedClose, {Kind::kPrice}},
      {PriceField::kVolume, {Kind::kQuantity, &Bar::volume}},
      {PriceField::kOpenInterest, {Kind::kQuantity, &Bar::open_interest}}};
  for (const auto& [field, step] : steps) {
    if (format_.Place(field) == column) return step;
  }
  return {};
}

bool PlainRows::Read(std::string_view line, PriceRow& row) {
  std::string_view date;
  std::string_view time;
  std::size_t left = steps_.size();
  for (const Step& step : steps_) {
    if (step.value != nullptr || step.kind == Step::Kind::kPrice) {
      if (!ReadNumber(step, line, row)) return false;
    } else {
      const void* const found = std::memchr(line.data(), format_.separator, line.size());
      const std::size_t size =
          found ? static_cast<std::size_t>(static_cast<const char*>(found) - line.data())
                : line.size();
      const std::string_view field = line.substr(0, size);
      line.remove_prefix(size);
      if (field.find('"') != std::string_view::npos) return false;
      if (step.kind == Step::Kind::kDate) date = field;
      if (step.kind == Step::Kind::kTime) time = field;
      if (step.kind == Step::Kind::kTicker) row.ticker = field;
      if (step.kind == Step::Kind::kPeriod) row.period = field;
    }
    --left;
    if (line.empty() != (left == 0)) return false;
    if (left > 0) {
      if (line.front() != format_.separator) return false;
      line.remove_prefix(1);
    }
  }
  if (steps_.empty()) return false;
  if (!has_adjusted_) row.adjusted_close = row.bar.close;
  return reader_.ReadUsualMoment(date, time, row);
}

bool PlainRows::ReadNumber(const Step& step, std::string_view& rest, PriceRow& row) {
  const bool is_price = step.kind == Step::Kind::kPrice;
  const std::string_view start = rest;
  const auto number = TakePlainNumber(rest, decimal_, is_price ? shift_ : 0);
  if (!number) return false;
  if (is_price) reader_.NoteDecimals(*number, start.substr(0, start.size() - rest.size()));
  (step.value ? row.bar.*step.value : row.adjusted_close) = number->value;
  return true;
}

}  // namespace velumar
