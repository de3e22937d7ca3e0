#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "progress/trade_filter.h"

namespace velumar {

// The account of a selection of trades, bar by bar: the starting money of the first session, plus
// the closed trades net of costs, plus the open ones at the close of the bar. The sessions with
// selected trades follow one another in the order they were played.
struct EquityCurve {
  struct Part {  // a session
    std::int32_t session = 0;
    std::int32_t first = 0;  // its first bar in the curve
    std::int32_t bars = 0;
    std::int32_t trades = 0;
    double years = 0;  // see kWeekdaysPerYear
  };

  double starting_money = 0;
  std::vector<double> equity;           // at the close of each bar
  std::vector<std::uint8_t> in_market;  // 1: a trade was open during the bar
  std::vector<Part> parts;
  // For each selected trade, the bar of the curve from which its net result is complete.
  std::vector<std::int32_t> completed;

  double Before(std::size_t bar) const { return bar == 0 ? starting_money : equity[bar - 1]; }
};

// A session lasts the weekdays from its first to its last day, one at least. Calendar days would
// give a session of a single day 365 of its like in a year, and a market that is open on Sundays is
// counted right by either.
inline constexpr double kWeekdaysPerYear = 365.25 * 5 / 7;

// A trade counts from the close of its entry bar to that of its exit bar. A session whose closes
// are gone has one bar for each trade, at its exit. A trade whose exit bar is not after its entry
// bar, or whose bars were not recorded, changes the account at once.
EquityCurve ChainEquity(const Played& played, std::span<const std::int32_t> selection);

// How far the equity is below its highest value so far, in money, bar by bar. The starting money is
// the first peak.
std::vector<double> DrawdownOf(const EquityCurve& curve);

}  // namespace velumar
