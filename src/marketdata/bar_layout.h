#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "marketdata/bar.h"
#include "marketdata/number_format.h"

namespace velumar {

// The fields of a bar in the usual order of a record's columns.
enum class BarField : std::uint8_t {
  kDate,
  kTime,
  kOpen,
  kHigh,
  kLow,
  kClose,
  kVolume,
  kOpenInterest
};

inline constexpr std::size_t kBarFields = 8;

// As messages name it: "date", "open interest".
std::string_view BarFieldName(BarField field);

// The member of a Bar; null for date and time.
constexpr float Bar::*FloatField(BarField field) {
  constexpr std::array<float Bar::*, kBarFields> kMembers = {
      nullptr,   nullptr,     &Bar::open,   &Bar::high,
      &Bar::low, &Bar::close, &Bar::volume, &Bar::open_interest};
  return kMembers[static_cast<std::size_t>(field)];
}

// Which fields a data file has, and in which order; every column is one 32-bit number. A layout
// without columns belongs to a security whose index record names no usable fields: its bars can be
// neither read nor written.
class BarLayout {
 public:
  static constexpr int kFewestColumns = 4;

  BarLayout() = default;

  // The bit set of index files: bit 0 date, 1 high, 2 low, 3 close, 4 volume, 5 open, 6 open
  // interest, 7 time. Without a date or with fewer than four fields: no columns.
  static BarLayout FromBits(std::uint8_t bits);
  // The usual fields for a number of fields, 4 to 8. Any other number: no columns.
  static BarLayout FromCount(int fields, bool intraday);
  // Any order with a date and without duplicates; else no columns.
  static BarLayout FromColumns(std::span<const BarField> columns);

  bool Empty() const { return count_ == 0; }
  int Columns() const { return static_cast<int>(count_); }
  std::size_t RecordSize() const { return 4 * count_; }
  bool Has(BarField field) const { return ColumnOf(field).has_value(); }
  std::optional<std::size_t> ColumnOf(BarField field) const;
  std::span<const BarField> Fields() const { return std::span(columns_).first(count_); }
  std::uint8_t Bits() const;

  bool operator==(const BarLayout&) const = default;

 private:
  std::array<BarField, kBarFields> columns_{};
  std::size_t count_ = 0;
};

// Old directories name the columns of a data file in a small text file next to it, one quoted name
// per line, followed by numbers for their display. Returns `layout` in the order of that text, or
// unchanged if the text is not a list of as many known columns.
BarLayout ReorderedByColumnNames(const BarLayout& layout, std::string_view text);

// `records` holds whole records, each of layout.RecordSize() bytes.
BarArrays DecodeBars(const BarLayout& layout, ByteView records);
Bar DecodeBar(const BarLayout& layout, ByteView record);

// Fills `record`, of layout.RecordSize() bytes, with the fields of the layout. Returns the field
// whose value the file format cannot hold, if there is one; `record` is then undefined.
std::optional<BarField> EncodeBar(const BarLayout& layout, const Bar& bar, ByteSpan record);

}  // namespace velumar
