#include "marketdata/bar_codec.h"

#include <vector>

namespace velumar {

namespace {

template <typename T, T (*Convert)(float)>
std::vector<T> DecodeColumn(const BarLayout& layout, BarField field, ByteView records) {
  const std::size_t size = layout.RecordSize();
  const std::size_t bars = records.size() / size;
  std::vector<T> values(bars);
  const auto column = layout.ColumnOf(field);
  if (!column) return values;
  const std::size_t place = 4 * *column;
  for (std::size_t i = 0; i < bars; ++i) {
    std::uint32_t word;
    std::memcpy(&word, records.data() + i * size + place, sizeof word);
    values[i] = Convert(FloatFromMbf(word));
  }
  return values;
}

constexpr float Same(float value) { return value; }

std::optional<float> StoredField(const Bar& bar, BarField field) {
  if (field == BarField::kDate) return StoredDate(bar.date);
  if (field == BarField::kTime) return StoredTime(bar.time);
  return bar.*FloatField(field);
}

void SetField(Bar& bar, BarField field, float value) {
  if (field == BarField::kDate) {
    bar.date = DateFromStored(value);
  } else if (field == BarField::kTime) {
    bar.time = TimeFromStored(value);
  } else {
    bar.*FloatField(field) = value;
  }
}

}  // namespace

BarArrays DecodeBars(const BarLayout& layout, ByteView records) {
  if (layout.Empty()) return {};
  const auto floats = [&](BarField field) {
    return DecodeColumn<float, Same>(layout, field, records);
  };
  return {
      .dates = DecodeColumn<std::int32_t, DateFromStored>(layout, BarField::kDate, records),
      .times = DecodeColumn<std::int32_t, TimeFromStored>(layout, BarField::kTime, records),
      .opens = floats(BarField::kOpen),
      .highs = floats(BarField::kHigh),
      .lows = floats(BarField::kLow),
      .closes = floats(BarField::kClose),
      .volumes = floats(BarField::kVolume),
      .open_interests = floats(BarField::kOpenInterest),
  };
}

Bar DecodeBar(const BarLayout& layout, ByteView record) {
  Bar bar;
  std::size_t offset = 0;
  for (const BarField field : layout.Fields()) {
    SetField(bar, field, FloatFromMbf(LoadAt<std::uint32_t>(record, offset)));
    offset += 4;
  }
  return bar;
}

std::optional<BarField> EncodeBar(const BarLayout& layout, const Bar& bar, ByteSpan record) {
  std::size_t offset = 0;
  for (const BarField field : layout.Fields()) {
    const auto value = StoredField(bar, field);
    const auto word = value ? MbfFromFloat(*value) : std::nullopt;
    if (!word) return field;
    StoreAt<std::uint32_t>(record, offset, *word);
    offset += 4;
  }
  return std::nullopt;
}

}  // namespace velumar
