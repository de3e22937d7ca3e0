#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>
#include <optional>

#include "import/price_reader.h"

namespace velumar {

// What the rows of a file show together, beyond their bars. Each takes every row.

// Whether the adjusted closes differ from the closes.
struct AdjustedCloses {
  std::int64_t rows = 0;
  std::int64_t above = 0;
  // Of the first row that differs.
  std::optional<Bar> differing;
  float differing_adjusted = 0;

  void Add(const PriceRow& row);
  bool NeverBelow() const { return above == rows; }
};

// The bar of a row in adjusted prices. Open, high and low are multiplied by the ratio of the
// closes, in double, and rounded once.
Bar Adjusted(const PriceRow& row);

// Whether prices could be traded in hundredths. They can't if most have more decimals and a bar
// spans only a few hundredths: rounding would distort it.
class PriceSteps {
 public:
  void Add(const Bar& bar);
  // The power of ten, with an even exponent, that leaves at most two decimals and keeps all prices
  // below a million.
  int SuggestedScale(int decimals) const;
  // True for prices such as 49670000000, which count billionths.
  bool LookCounted() const { return rows_ > 0 && finer_ == 0 && lowest_ > kCounted; }

 private:
  static constexpr double kCounted = 1e7;

  std::int64_t rows_ = 0;
  std::int64_t finer_ = 0;
  double range_ = 0;
  double highest_ = 0;
  double lowest_ = std::numeric_limits<double>::infinity();
};

// The first and last day of dates that can be read both ways.
struct DateReadings {
  struct Days {
    std::int32_t first = 99991231;
    std::int32_t last = 0;
    void Add(std::int32_t date) {
      first = std::min(first, date);
      last = std::max(last, date);
    }
  };
  Days day_first;
  Days month_first;
  Days year_first;

  // A date that was read with the day first.
  void Add(std::int32_t date) {
    day_first.Add(date);
    month_first.Add(date / 10000 * 10000 + date % 100 * 100 + date / 100 % 100);
    constexpr std::int32_t kCentury = 100;
    constexpr std::int32_t kPivot = 69;
    const std::int32_t year = date % 100 + (date % 100 < kPivot ? 20 : 19) * kCentury;
    year_first.Add(year * 10000 + date / 100 % 100 * 100 + date / 10000 % 100);
  }
};

}  // namespace velumar
