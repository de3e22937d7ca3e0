#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velumar {

// Where the columns of a file stand, told by its header. Names are found in any case and order,
// with or without "<>", blanks, points and the usual short forms ("Vol.", "Open Int", "DateTime").
// Other columns are passed over.
class CsvColumns {
 public:
  enum Column { kDate, kTime, kOpen, kHigh, kLow, kClose, kVolume, kOpenInterest };

  // Throws CsvError naming the columns that are missing, or one that stands twice. Time, Volume and
  // OpenInterest may be missing.
  explicit CsvColumns(const std::vector<std::string>& header);

  // As people are told of it: "open interest".
  static std::string_view Name(Column column);
  bool Has(Column column) const { return places_[column].has_value(); }

  // Throws CsvError for a line that has fewer cells than the header, or more with something in
  // them.
  void RequireWidth(const std::vector<std::string>& cells) const;
  // Of a column that the file has, in a line of the right width.
  const std::string& Cell(const std::vector<std::string>& cells, Column column) const {
    return cells[*places_[column]];
  }

 private:
  std::array<std::optional<std::size_t>, 8> places_;
  std::size_t width_;
};

}  // namespace velumar
