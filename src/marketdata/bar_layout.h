#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace velumar {

// The fields of a bar in the order in which the columns of a record stand.
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

// "date", "open interest": how messages name a field.
std::string_view BarFieldName(BarField field);

// Which fields a data file holds and in which order; every column is one 32-bit number. A layout
// without columns belongs to a security whose index record tells no usable fields: none of its
// bars can be read or written.
class BarLayout {
 public:
  static constexpr int kFewestColumns = 4;

  BarLayout() = default;

  // The bit set of index files: bit 0 date, 1 high, 2 low, 3 close, 4 volume, 5 open, 6 open
  // interest, 7 time. Without a date or with fewer than four fields: no columns.
  static BarLayout FromBits(std::uint8_t bits);
  // What a bare number of fields, 4 to 8, stands for. Any other number: no columns.
  static BarLayout FromCount(int fields, bool intraday);
  // Any order, as long as it begins a bar's identity somewhere (a date) and names no field twice.
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

// Old directories name the columns of a data file in a small text file beside it, one quoted name a
// line, followed by numbers about their display. `layout` in the order that the text tells; the
// layout itself where the text is no list of as many known columns.
BarLayout ReorderedByColumnNames(const BarLayout& layout, std::string_view text);

}  // namespace velumar
