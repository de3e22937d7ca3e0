#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velumar {

// Which field of a line belongs to which column, according to the header. Names match in any case
// and order, with or without "<>", blanks and points, and in the usual short forms ("Vol.", "Open
// Int", "DateTime"). Other columns are ignored.
class CsvColumns {
 public:
  enum Column { kDate, kTime, kOpen, kHigh, kLow, kClose, kVolume, kOpenInterest };

  // Throws CsvError naming the columns that are missing, or one that occurs twice. Time, Volume and
  // OpenInterest are optional.
  explicit CsvColumns(const std::vector<std::string>& header);

  // As messages name it: "open interest".
  static std::string_view Name(Column column);
  bool Has(Column column) const { return places_[column].has_value(); }

  // Throws CsvError for a line with fewer fields than the header, or with more that are not empty.
  void RequireWidth(const std::vector<std::string>& fields) const;
  // Requires Has(column) and RequireWidth(fields).
  const std::string& Field(const std::vector<std::string>& fields, Column column) const {
    return fields[*places_[column]];
  }

 private:
  std::array<std::optional<std::size_t>, 8> places_;
  std::size_t width_;
};

}  // namespace velumar
