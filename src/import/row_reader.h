#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "import/moment_reader.h"
#include "import/price_number.h"
#include "import/price_reader.h"
#include "import/table_format.h"

namespace velumar {

// Reads the fields of a row into a bar.
class RowReader {
 public:
  using Fields = std::vector<std::string_view>;

  // `format` must outlive the object. Prices are multiplied by 10 to the power `shift`.
  RowReader(const TableFormat& format, int shift);

  // True if a price is missing, though the row goes on to where it should be.
  bool LacksPrice(const Fields& fields) const;
  // True if the row ends before the last field that is read.
  bool IsCutOff(const Fields& fields) const { return fields.size() < needed_; }
  // Throws ImportError, naming the field.
  void Read(const Fields& fields, PriceRow& row);
  // True if the field of the date holds one.
  bool HasDate(const Fields& fields);

  // The part of Read that concerns date and time; false if they cannot be read.
  bool ReadUsualMoment(std::string_view date, std::string_view time, PriceRow& row);
  // Of a price with the text that it was read from.
  void NoteDecimals(const PriceNumber& number, std::string_view text) {
    if (number.decimals > price_decimals_) RaiseDecimals(number, text);
  }

  // Of all rows so far.
  int PriceDecimals() const { return price_decimals_; }
  // What the first row says about its zone: "UTC", "+02:00", "America/New_York".
  const std::string& Zone() const { return zone_; }

 private:
  void RequireWidth(const Fields& fields) const;
  void ReadMoment(std::string_view date, std::string_view time, PriceRow& row);
  void RaiseDecimals(const PriceNumber& number, std::string_view text);
  float Price(const Fields& fields, PriceField field);
  float Quantity(const Fields& fields, PriceField field) const;

  const TableFormat& format_;
  int shift_;
  MomentReader moments_;
  std::size_t needed_ = 0;  // fields up to the last one that is read
  int price_decimals_ = 0;
  bool has_zone_ = false;
  std::string zone_;
};

}  // namespace velumar
