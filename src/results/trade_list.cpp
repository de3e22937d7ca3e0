#include "results/trade_list.h"

#include <algorithm>
#include <cmath>
#include <deque>

#include "base/decimal.h"

namespace velumar {

namespace {

// Like the account: it keeps its average entry price to two decimals, as a row has it, and closes
// at the exact close of the bar.
TradeEnd EntryOf(const RunOrder& order) {
  return {order.date, order.time, order.price, order.bar, order.key, order.iso_date, order.counted};
}
TradeEnd ExitOf(const RunOrder& order) {
  return {order.date,     order.time,   order.close.value_or(order.price), order.bar, order.key,
          order.iso_date, order.counted};
}

// The open lots of one side, updated order by order.
class SideLots {
 public:
  explicit SideLots(bool is_long) : is_long_(is_long) {}

  // Appends the trades that the order closes.
  void Apply(const RunOrder& order, std::vector<Trade>& closed) {
    MatchHolding(order);
    switch (order.kind) {
      case RunOrder::Kind::kEntry:
        if (Ordered(order) > 0) {
          lots_.push_back({is_long_, Ordered(order), EntryOf(order),
                           order.plan ? order.plan->risk : std::nullopt});
        }
        held_ = order.held;
        break;
      case RunOrder::Kind::kOffset:
        Close(Ordered(order), order, closed);
        held_ = order.held;
        break;
      case RunOrder::Kind::kWiped:
        for (const OpenLot& lot : lots_) closed.push_back({lot, ExitOf(order), true, {}, {}});
        lots_.clear();
        held_ = 0;
        break;
    }
  }
  const std::deque<OpenLot>& Open() const { return lots_; }

 private:
  // An offset without a detail closed as much as the holding decreased.
  double Ordered(const RunOrder& order) const {
    return order.quantity.value_or(std::max(0.0, held_ - order.held));
  }

  double HeldBefore(const RunOrder& order) const {
    switch (order.kind) {
      case RunOrder::Kind::kEntry:
        return HeldNothingBefore(order) ? 0 : order.held - Ordered(order);
      case RunOrder::Kind::kOffset:
        return order.held + Ordered(order);
      case RunOrder::Kind::kWiped:
        break;
    }
    return order.held;
  }

  // An account that was reset in between holds nothing; a quantity that the rows don't explain is
  // held without an entry.
  void MatchHolding(const RunOrder& order) {
    const double before = HeldBefore(order);
    if (std::abs(before - held_) <= kExactQuantity * std::max({before, held_, order.held})) return;
    lots_.clear();
    if (before > 0) lots_.push_back({is_long_, before, std::nullopt});
    held_ = before;
  }

  void Close(double quantity, const RunOrder& order, std::vector<Trade>& closed) {
    const double negligible = kExactQuantity * quantity;
    while (quantity > negligible && !lots_.empty()) {
      OpenLot& lot = lots_.front();
      const OpenLot part = Taken(lot, std::min(lot.quantity, quantity));
      closed.push_back(Closed(part, order));
      quantity = DecimalDifference(quantity, part.quantity);
      if (lot.quantity <= kExactQuantity * part.quantity) lots_.pop_front();
    }
    if (order.held == 0) lots_.clear();
  }

  // A part of the lot, which loses it.
  static OpenLot Taken(OpenLot& lot, double quantity) {
    OpenLot part = lot;
    part.quantity = quantity;
    if (lot.risk) {
      part.risk = *lot.risk * quantity / lot.quantity;
      *lot.risk -= *part.risk;
    }
    lot.quantity = DecimalDifference(lot.quantity, quantity);
    return part;
  }

  Trade Closed(const OpenLot& part, const RunOrder& order) const {
    Trade trade{part, ExitOf(order), false, {}, {}};
    if (!part.entry) return trade;
    const double entry = part.entry->Counted();
    const double exit = trade.exit.Counted();
    // Never -0.
    trade.points = part.quantity *
                   (is_long_ ? DecimalDifference(exit, entry) : DecimalDifference(entry, exit));
    if (!order.money_per_point) return trade;
    trade.money = *trade.points * *order.money_per_point;
    if (part.risk.value_or(0) > 0) trade.r = *trade.money / *part.risk;
    return trade;
  }

  bool is_long_;
  std::deque<OpenLot> lots_;
  double held_ = 0;
};

}  // namespace

TradeList ListTrades(const std::vector<RunRecord>& account) {
  SideLots long_lots(true);
  SideLots short_lots(false);
  TradeList list;
  for (const RunRecord& run : account) {
    list.trades.clear();
    for (const RunOrder& order : run.orders) {
      (order.is_long ? long_lots : short_lots).Apply(order, list.trades);
    }
  }
  list.open.assign(long_lots.Open().begin(), long_lots.Open().end());
  list.open.insert(list.open.end(), short_lots.Open().begin(), short_lots.Open().end());
  return list;
}

}  // namespace velumar
