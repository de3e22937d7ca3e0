#include "results/market_time.h"

#include <algorithm>
#include <vector>

namespace velumar {

namespace {

struct Bars {
  int first = 0;
  int last = 0;  // one behind the last that counts
};

std::optional<Bars> OrderedBars(const RunRecord& run) {
  std::optional<Bars> bars;
  for (const RunOrder& order : run.orders) {
    if (!order.bar) return std::nullopt;
    if (!bars) bars = Bars{*order.bar, *order.bar};
    bars->first = std::min(bars->first, *order.bar);
    bars->last = std::max(bars->last, *order.bar);
  }
  return bars && bars->last > bars->first ? bars : std::nullopt;
}

// Adds up holdings bar by bar.
class Holdings {
 public:
  explicit Holdings(Bars bars)
      : bars_(bars), held_(static_cast<std::size_t>(bars.last - bars.first)) {}

  // False when the entry wasn't noted.
  bool Add(const OpenLot& lot, int until) {
    if (!lot.entry || !lot.entry->bar) return false;
    const int from = std::max(*lot.entry->bar, bars_.first);
    for (int bar = from; bar < until; ++bar) {
      held_[static_cast<std::size_t>(bar - bars_.first)] += lot.quantity * lot.entry->price;
    }
    return true;
  }

  MarketTime Shared() const {
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
  Bars bars_;
  std::vector<double> held_;
};

}  // namespace

std::optional<MarketTime> TimeInMarket(const RunRecord& run, const TradeList& list) {
  const auto bars = OrderedBars(run);
  if (!bars) return std::nullopt;
  Holdings holdings(*bars);
  bool whole = true;
  for (const Trade& trade : list.trades) {
    whole = whole && holdings.Add(trade.lot, trade.exit.bar.value_or(bars->first));
  }
  for (const OpenLot& lot : list.open) whole = whole && holdings.Add(lot, bars->last);
  return whole ? std::optional(holdings.Shared()) : std::nullopt;
}

}  // namespace velumar
