#pragma once

#include <cstddef>
#include <cstdint>

#include "import/sample_table.h"

namespace velumar {

// Which of the two follows the open.
enum class PriceOrder : std::uint8_t { kHighFirst, kLowFirst };

// Answers what the values of a column could be.
class ColumnValues {
 public:
  // Both must outlive the object; the style may change.
  ColumnValues(const SampleTable& sample, const DateStyle& dates)
      : sample_(sample), dates_(dates) {}

  // Of most values.
  bool AreDates(std::size_t column) const;
  bool AreUnixTimes(std::size_t column) const;
  bool AreNumbers(std::size_t column) const;
  bool AreTimes(std::size_t column) const;
  // Times that can't be anything else: with colons or leading zeros.
  bool AreClockTimes(std::size_t column) const;
  bool AreWords(std::size_t column) const;
  bool AreDigits(std::size_t column) const;

  // Of all values. Dates of six digits look like any number; only a name shows what they are.
  bool AreSixDigitDates(std::size_t column) const;
  bool AreMissing(std::size_t column) const;
  // 24:00, as some programs label the bar of a day.
  bool AreEndsOfDays(std::size_t column) const;
  std::size_t Different(std::size_t column) const;  // how many
  // Whole numbers that rise by one.
  bool CountRows(std::size_t column) const;

  // A named column needs less proof than its values alone: a wrong value is named later.
  bool HaveDate(std::size_t column) const;
  bool HaveNumber(std::size_t column) const;
  bool HaveTime(std::size_t column) const;

  // Four columns, with the highest and the lowest price where the order says, in each row.
  bool ArePrices(std::size_t first, PriceOrder order, NumberStyle style) const;
  // True for an adjusted close or an average next to the closes: never far from these prices, and
  // seldom at a much different distance than in the row before.
  bool AreNearPrices(std::size_t column, std::size_t prices, NumberStyle style) const;
  // Numbers, none below and most above zero, that are not all the same, no rates, and don't count
  // rows.
  bool MayBeVolumes(std::size_t column, NumberStyle style) const;

 private:
  const SampleTable& sample_;
  const DateStyle& dates_;
};

}  // namespace velumar
