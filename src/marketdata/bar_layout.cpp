#include "marketdata/bar_layout.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace velumar {

namespace {

constexpr std::array<int, kBarFields> kBitOfField = {0, 7, 5, 1, 2, 3, 4, 6};
constexpr std::array<std::uint8_t, 5> kBitsOfCount = {0x0F, 0x1F, 0x3F, 0x7F, 0xFF};
constexpr std::uint8_t kBitsOfSevenIntraday = 0xBF;

std::uint8_t BitOf(BarField field) {
  return static_cast<std::uint8_t>(1U << kBitOfField[static_cast<std::size_t>(field)]);
}

constexpr std::pair<std::string_view, BarField> kColumnNames[] = {
    {"DATE", BarField::kDate},
    {"TIME", BarField::kTime},
    {"OPEN", BarField::kOpen},
    {"HIGH", BarField::kHigh},
    {"LOW", BarField::kLow},
    {"CLOSE", BarField::kClose},
    {"LAST", BarField::kClose},
    {"VOL", BarField::kVolume},
    {"VOLUME", BarField::kVolume},
    {"OI", BarField::kOpenInterest},
    {"OPENINT", BarField::kOpenInterest},
    {"OPENINTEREST", BarField::kOpenInterest},
};

std::optional<BarField> FieldNamed(std::string_view name) {
  const auto* const found =
      std::ranges::find(kColumnNames, name, &std::pair<std::string_view, BarField>::first);
  if (found == std::end(kColumnNames)) return std::nullopt;
  return found->second;
}

// The letters of each part of the text in upper case: `"Open int.",2,0` gives only OPENINT.
std::vector<std::string> NamesIn(std::string_view text) {
  std::vector<std::string> names(1);
  for (const char c : text) {
    if (c == '\n' || c == '\r' || c == ',' || c == ';' || c == '\t') {
      if (!names.back().empty()) names.emplace_back();
    } else if (c >= 'a' && c <= 'z') {
      names.back() += static_cast<char>(c - 'a' + 'A');
    } else if (c >= 'A' && c <= 'Z') {
      names.back() += c;
    }
  }
  if (names.back().empty()) names.pop_back();
  return names;
}

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

std::string_view BarFieldName(BarField field) {
  static constexpr std::array<std::string_view, kBarFields> kNames = {
      "date", "time", "open", "high", "low", "close", "volume", "open interest"};
  return kNames[static_cast<std::size_t>(field)];
}

BarLayout BarLayout::FromBits(std::uint8_t bits) {
  std::vector<BarField> columns;
  for (std::size_t i = 0; i < kBarFields; ++i) {
    const auto field = static_cast<BarField>(i);
    if ((bits & BitOf(field)) != 0) columns.push_back(field);
  }
  return FromColumns(columns);
}

BarLayout BarLayout::FromCount(int fields, bool intraday) {
  const int place = fields - kFewestColumns;
  if (place < 0 || place >= static_cast<int>(kBitsOfCount.size())) return {};
  if (fields == 7 && intraday) return FromBits(kBitsOfSevenIntraday);
  return FromBits(kBitsOfCount[static_cast<std::size_t>(place)]);
}

BarLayout BarLayout::FromColumns(std::span<const BarField> columns) {
  if (columns.size() < kFewestColumns || columns.size() > kBarFields) return {};
  BarLayout layout;
  for (const BarField field : columns) {
    if (layout.Has(field)) return {};
    layout.columns_[layout.count_++] = field;
  }
  return layout.Has(BarField::kDate) ? layout : BarLayout();
}

std::optional<std::size_t> BarLayout::ColumnOf(BarField field) const {
  const auto fields = Fields();
  const auto found = std::ranges::find(fields, field);
  if (found == fields.end()) return std::nullopt;
  return static_cast<std::size_t>(found - fields.begin());
}

std::uint8_t BarLayout::Bits() const {
  std::uint8_t bits = 0;
  for (const BarField field : Fields()) bits = static_cast<std::uint8_t>(bits | BitOf(field));
  return bits;
}

BarLayout ReorderedByColumnNames(const BarLayout& layout, std::string_view text) {
  std::vector<BarField> columns;
  for (const std::string& name : NamesIn(text)) {
    const auto field = FieldNamed(name);
    if (!field) return layout;
    columns.push_back(*field);
  }
  const BarLayout named = BarLayout::FromColumns(columns);
  return named.Columns() == layout.Columns() ? named : layout;
}

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
