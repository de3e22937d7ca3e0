#pragma once

#include <string_view>
#include <vector>

#include "import/row_reader.h"
#include "import/table_format.h"

namespace velumar {

// Reads rows of nothing but digits and decimal signs, dates and times apart, in one pass over the
// line. Long files have hardly any other rows.
class PlainRows {
 public:
  // Both must outlive the object.
  PlainRows(const TableFormat& format, RowReader& reader, int shift);

  // Returns false for any other row, also for a wrong one: RowReader reads it or says what's wrong.
  bool Read(std::string_view line, PriceRow& row);

 private:
  // What is done with a column.
  struct Step {
    enum class Kind : std::uint8_t { kSkip, kDate, kTime, kNumber, kTicker, kPeriod };
    Kind kind = Kind::kSkip;
    float Bar::*value = nullptr;  // null for the adjusted close
    bool is_price = false;
  };

  Step StepOf(std::size_t column) const;
  const char* TakeNumber(const Step& step, const char* at, const char* end, PriceRow& row);

  const TableFormat& format_;
  RowReader& reader_;
  int shift_;
  char decimal_;
  bool has_adjusted_;
  std::vector<Step> steps_;
};

}  // namespace velumar
