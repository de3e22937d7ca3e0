#pragma once

#include <optional>

#include "results/trade_list.h"

namespace velumar {

// How long and with how much the trader was in the market, over the bars from the run's lowest
// ordered one to its highest.
struct MarketTime {
  double held = 0;             // bars with a holding, as a share of them all
  double average_holding = 0;  // quantity times entry price, over all bars
};

// Nothing when the orders span no bars or their bars or entries weren't noted. A quantity that was
// closed at its entry's bar or, after a step back, before it was held for no bar.
std::optional<MarketTime> TimeInMarket(const RunRecord& run, const TradeList& list);

}  // namespace velumar
