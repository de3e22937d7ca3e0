#include "results/trade_sums.h"

#include <algorithm>

namespace velumar {

TradeSums SumTrades(const std::vector<Trade>& trades) {
  TradeSums sums;
  int wins_now = 0;
  int losses_now = 0;
  for (const Trade& trade : trades) {
    ++sums.trades;
    if (!trade.money) {
      ++sums.without_result;
      continue;
    }
    const double money = *trade.money;
    wins_now = money > 0 ? wins_now + 1 : 0;
    losses_now = money < 0 ? losses_now + 1 : 0;
    sums.wins += money > 0 ? 1 : 0;
    sums.losses += money < 0 ? 1 : 0;
    sums.won += std::max(money, 0.0);
    sums.lost += std::min(money, 0.0);
    sums.largest_win = std::max(sums.largest_win, money);
    sums.largest_loss = std::min(sums.largest_loss, money);
    sums.longest_wins = std::max(sums.longest_wins, wins_now);
    sums.longest_losses = std::max(sums.longest_losses, losses_now);
  }
  return sums;
}

}  // namespace velumar
