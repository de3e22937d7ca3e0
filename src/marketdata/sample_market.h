#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "marketdata/bar.h"

namespace velumar {

// An invented security, and how it trades.
struct SampleSecurity {
  std::string_view symbol;
  std::string_view name;
  double first_price;
  int ticks_per_unit;    // prices are whole ticks
  double daily_move;     // usual change of a day, as a part of the price
  double yearly_growth;  // what the price is drawn after in the long run
  double daily_volume;   // usual volume of a day, below 2^23
  double open_interest;  // usual open interest, 0 where there is none
  int session_start;     // minutes after midnight, whole hours or halves
  int session_end;
  std::vector<int> intraday;  // minutes of the series beside the daily one
};

// Eight years of trading in one security: every day as one bar and, where there are intraday
// series, the last year in bars of five minutes that add up to the days. The same security and seed
// always trade the same way.
class SampleMarket {
 public:
  SampleMarket(const SampleSecurity& security, std::uint64_t seed);

  const std::vector<Bar>& Daily() const { return daily_; }
  // The newest days in bars of 5, 15, 30 or 60 minutes, which carry the time that they begin at.
  std::vector<Bar> Intraday(int minutes, int days) const;

 private:
  std::vector<Bar> daily_;
  std::vector<std::vector<Bar>> sessions_;  // per day of the last year
};

}  // namespace velumar
