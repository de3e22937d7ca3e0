#include "results/run_measures.h"

#include <algorithm>

namespace velumar {

namespace {

struct BarRange {
  int first = 0;
  int end = 0;  // one after the last bar that counts
};

std::optional<BarRange> BarsWithOrders(const RunRecord& run) {
  std::optional<BarRange> bars;
  for (const RunOrder& order : run.orders) {
    if (!order.bar) return std::nullopt;
    if (!bars) bars = BarRange{*order.bar, *order.bar};
    bars->first = std::min(bars->first, *order.bar);
    bars->end = std::max(bars->end, *order.bar);
  }
  return bars && bars->end > bars->first ? bars : std::nullopt;
}

// The value of all holdings, bar by bar.
class Holdings {
 public:
  explicit Holdings(BarRange bars)
      : bars_(bars), held_(static_cast<std::size_t>(bars.end - bars.first)) {}

  // Returns false if the entry was not recorded.
  bool Add(const OpenLot& lot, int until) {
    if (!lot.entry || !lot.entry->bar) return false;
    const int from = std::max(*lot.entry->bar, bars_.first);
    for (int bar = from; bar < until; ++bar) {
      held_[static_cast<std::size_t>(bar - bars_.first)] += lot.quantity * lot.entry->price;
    }
    return true;
  }

  MarketTime PerBar() const {
    MarketTime time;
    for (const double value : held_) {
      time.held += value > 0 ? 1 : 0;
      time.average_holding += value;
    }
    time.held /= static_cast<double>(held_.size());
    time.average_holding /= static_cast<double>(held_.size());
    return time;
  }

 private:
  BarRange bars_;
  std::vector<double> held_;
};

}  // namespace

TradeSums SumTrades(const std::vector<Trade>& trades) {
  TradeSums sums;
  int wins_in_a_row = 0;
  int losses_in_a_row = 0;
  for (const Trade& trade : trades) {
    ++sums.trades;
    if (!trade.money) {
      ++sums.without_result;
      continue;
    }
    const double money = *trade.money;
    wins_in_a_row = money > 0 ? wins_in_a_row + 1 : 0;
    losses_in_a_row = money < 0 ? losses_in_a_row + 1 : 0;
    sums.wins += money > 0 ? 1 : 0;
    sums.losses += money < 0 ? 1 : 0;
    sums.won += std::max(money, 0.0);
    sums.lost += std::min(money, 0.0);
    sums.largest_win = std::max(sums.largest_win, money);
    sums.largest_loss = std::min(sums.largest_loss, money);
    sums.most_wins_in_a_row = std::max(sums.most_wins_in_a_row, wins_in_a_row);
    sums.most_losses_in_a_row = std::max(sums.most_losses_in_a_row, losses_in_a_row);
  }
  return sums;
}

OrderSums SumOrders(const RunRecord& run) {
  OrderSums sums;
  for (const RunOrder& order : run.orders) {
    if (order.kind == RunOrder::Kind::kWiped) continue;
    ++sums.orders;
    sums.commission += order.commission;
    sums.vat = sums.vat && order.vat ? std::optional(*sums.vat + *order.vat) : std::nullopt;
    const auto look_ahead = order.LookAhead();
    sums.look_ahead = sums.look_ahead && look_ahead
                          ? std::optional(*sums.look_ahead + (*look_ahead ? 1 : 0))
                          : std::nullopt;
    sums.money = order.money;
  }
  return sums;
}

std::optional<Drawdown> MaxDrawdown(const RunRecord& run) {
  if (!run.began || run.orders.empty()) return std::nullopt;
  double peak = run.began->starting_money;
  std::string peak_moment = "start";
  Drawdown deepest;
  for (const RunOrder& order : run.orders) {
    if (order.kind == RunOrder::Kind::kWiped) continue;
    const std::string moment = order.date + " " + order.time;
    if (order.money > peak) {
      peak = order.money;
      peak_moment = moment;
    }
    if (peak - order.money > deepest.money) {
      const double fall = peak - order.money;
      deepest = {fall, peak > 0 ? std::optional(fall / peak) : std::nullopt, peak_moment, moment};
    }
  }
  return deepest;
}

std::optional<MarketTime> TimeInMarket(const RunRecord& run, const TradeList& list) {
  const auto bars = BarsWithOrders(run);
  if (!bars) return std::nullopt;
  Holdings holdings(*bars);
  bool complete = true;
  for (const Trade& trade : list.trades) {
    complete = complete && holdings.Add(trade.lot, trade.exit.bar.value_or(bars->first));
  }
  for (const OpenLot& lot : list.open) complete = complete && holdings.Add(lot, bars->end);
  return complete ? std::optional(holdings.PerBar()) : std::nullopt;
}

}  // namespace velumar
