#include "import/plain_rows.h"

#include <algorithm>

#include "import/field_text.h"
#include "import/price_number.h"

namespace velumar {

namespace {

// Quotes and blanks around a field are RowReader's.
bool NeedsCare(std::string_view field) {
  return !field.empty() &&
         (field.front() == '"' || IsBlank(field.front()) || IsBlank(field.back()));
}

}  // namespace

PlainRows::PlainRows(const TableFormat& format, RowReader& reader, int shift)
    : format_(format),
      reader_(reader),
      shift_(shift),
      decimal_(format.numbers.decimal_comma ? ',' : '.'),
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
      {PriceField::kOpen, {Kind::kNumber, &Bar::open, true}},
      {PriceField::kHigh, {Kind::kNumber, &Bar::high, true}},
      {PriceField::kLow, {Kind::kNumber, &Bar::low, true}},
      {PriceField::kClose, {Kind::kNumber, &Bar::close, true}},
      {PriceField::kAdjustedClose, {Kind::kNumber, nullptr, true}},
      {PriceField::kVolume, {Kind::kNumber, &Bar::volume}},
      {PriceField::kOpenInterest, {Kind::kNumber, &Bar::open_interest}}};
  for (const auto& [field, step] : steps) {
    if (format_.Place(field) == column) return step;
  }
  return {};
}

inline const char* PlainRows::TakeNumber(const Step& step, const char* at, const char* end,
                                         PriceRow& row) {
  PriceNumber number;
  const char* const after = TakePlainNumber(at, end, decimal_, step.is_price ? shift_ : 0, number);
  if (!after) return nullptr;
  if (step.is_price) reader_.NoteDecimals(number, {at, static_cast<std::size_t>(after - at)});
  (step.value ? row.bar.*step.value : row.adjusted_close) = number.value;
  return after;
}

bool PlainRows::Read(std::string_view line, PriceRow& row) {
  if (steps_.empty()) return false;
  const char* at = line.data();
  const char* const end = at + line.size();
  std::string_view date;
  std::string_view time;
  const Step* const last = &steps_.back();
  for (const Step* step = steps_.data();; ++step) {
    if (step->kind == Step::Kind::kNumber) {
      at = TakeNumber(*step, at, end, row);
      if (!at) return false;
    } else {
      const char* const field_end = std::find(at, end, format_.separator);
      const std::string_view field(at, static_cast<std::size_t>(field_end - at));
      at = field_end;
      if (NeedsCare(field)) return false;
      if (step->kind == Step::Kind::kDate) date = field;
      if (step->kind == Step::Kind::kTime) time = field;
      if (step->kind == Step::Kind::kTicker) row.ticker = field;
      if (step->kind == Step::Kind::kPeriod) row.period = field;
    }
    if (step == last) break;
    if (at == end || *at != format_.separator) return false;
    ++at;
  }
  if (at != end) return false;
  if (!has_adjusted_) row.adjusted_close = row.bar.close;
  return reader_.ReadUsualMoment(date, time, row);
}

}  // namespace velumar
