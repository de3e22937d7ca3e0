#pragma once

#include <optional>
#include <string>
#include <vector>

#include "results/trade_list.h"

namespace velumar {

// Totals of trades, in money before costs. A trade without P/L is only counted.
struct TradeSums {
  int trades = 0;
  int without_result = 0;
  int wins = 0;
  int losses = 0;
  double won = 0;
  double lost = 0;  // negative
  double largest_win = 0;
  double largest_loss = 0;
  // In the order the trades were closed. A break-even trade ends both streaks.
  int most_wins_in_a_row = 0;
  int most_losses_in_a_row = 0;

  int WithResult() const { return trades - without_result; }
};

TradeSums SumTrades(const std::vector<Trade>& trades);

// Totals of a run's orders. The optional ones are empty if an order has no detail.
struct OrderSums {
  int orders = 0;
  double commission = 0;
  std::optional<double> vat = 0;
  std::optional<int> look_ahead = 0;
  std::optional<double> money;  // realised, after the last order
};

OrderSums SumOrders(const RunRecord& run);

// The largest fall of the realised money from its peak.
struct Drawdown {
  double money = 0;
  std::optional<double> share;  // of the peak; empty if the peak was not above 0
  // Date and time of the peak and the low. `from` is "start" if the starting money was the peak.
  // Both are empty if the money never fell.
  std::string from;
  std::string to;
};

// Starts from the starting money, so a loss of the first trade counts. Empty if the run has no
// orders or its starting money was not recorded.
std::optional<Drawdown> MaxDrawdown(const RunRecord& run);

// How long and with how much money the trader was in the market, over the bars from the lowest one
// with an order to the highest.
struct MarketTime {
  double held = 0;             // bars with a holding, as a share of all
  double average_holding = 0;  // quantity times entry price, per bar
};

// Empty if the orders are all on one bar, or if a bar or an entry was not recorded. A quantity that
// was closed on the bar of its entry, or on an earlier one after a step back, was held for no bars.
std::optional<MarketTime> TimeInMarket(const RunRecord& run, const TradeList& list);

}  // namespace velumar
