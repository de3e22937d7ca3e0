#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ledger/ledger.h"
#include "results/run_record.h"

namespace velumar {

// The profit of a session's trades in money, before costs, next to what no decision would have
// made.
struct SessionResult {
  double played = 0;  // holdings at the end are valued at the last bar that was shown
  double held = 0;    // the largest net holding of the session, bought at its first bar and kept
  double moved = 0;   // of the price from the first to the last bar, in percent
  // The average of the same trades begun at random bars of the session; as `played` if they take
  // all of it.
  double chance = 0;
};

inline constexpr int kChanceDraws = 1000;

// `orders` are those of a session in the order in which they were placed, `closes` those of its
// series, and `first` and `last` the bars between which it was played. Orders outside these bars
// are left out. The draws follow from the seed. A holding that was wiped out counts as sold.
SessionResult ResultOfSession(const std::vector<RunOrder>& orders, const std::vector<float>& closes,
                              int first, int last, double money_per_point, std::uint64_t seed);

// The result in three lines.
std::string ResultText(const SessionResult& result);

}  // namespace velumar
