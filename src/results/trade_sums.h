#pragma once

#include <vector>

#include "results/trade_list.h"

namespace velumar {

// Trades counted and added up, in money before costs. One without a result counts only as that.
struct TradeSums {
  int trades = 0;
  int without_result = 0;
  int wins = 0;
  int losses = 0;
  double won = 0;
  double lost = 0;  // negative
  double largest_win = 0;
  double largest_loss = 0;
  // One after the other as they were closed; a trade without gain or loss ends both.
  int longest_wins = 0;
  int longest_losses = 0;

  int WithResult() const { return trades - without_result; }
};

TradeSums SumTrades(const std::vector<Trade>& trades);

}  // namespace velumar
