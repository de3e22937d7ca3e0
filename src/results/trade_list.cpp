#include "results/trade_list.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

#include "base/decimal.h"

namespace velumar {

namespace {

// Like the account: it keeps its average entry price to two decimals, as a row has it, and closes
// at the exact close of the bar.
TradeEnd EndOf(const RunOrder& order, double price, double ordered) {
  const double costs = order.commission + order.vat.value_or(0);
  return {.date = order.date,
          .time = order.time,
          .price = price,
          .bar = order.bar,
          .key = order.key,
          .iso_date = order.iso_date,
          .counted = order.counted,
          .costs = ordered > 0 ? costs / ordered : 0,
          .look_ahead = order.LookAhead().value_or(false)};
}

}  // namespace

// An order and the side that it changes.
class TradeMatcher::Matching {
 public:
  Matching(Side& side, const RunOrder& order)
      : side_(side), order_(order), ordered_(Ordered(side, order)) {}

  std::vector<Trade> Apply() {
    MatchHolding();
    switch (order_.kind) {
      case RunOrder::Kind::kEntry:
        Enter();
        break;
      case RunOrder::Kind::kOffset:
        Close();
        break;
      case RunOrder::Kind::kWiped:
        Wipe();
        break;
    }
    return std::move(closed_);
  }

 private:
  // An offset without a detail closed as much as the holding decreased.
  static double Ordered(const Side& side, const RunOrder& order) {
    return order.quantity.value_or(std::max(0.0, side.held - order.held));
  }

  double HeldBefore() const {
    switch (order_.kind) {
      case RunOrder::Kind::kEntry:
        return HeldNothingBefore(order_) ? 0 : order_.held - ordered_;
      case RunOrder::Kind::kOffset:
        return order_.held + ordered_;
      case RunOrder::Kind::kWiped:
        break;
    }
    return order_.held;
  }

  // An account that was reset in between holds nothing; a quantity that the rows don't explain is
  // held without an entry.
  void MatchHolding() {
    const double before = HeldBefore();
    const double largest = std::max({before, side_.held, order_.held});
    if (std::abs(before - side_.held) <= kExactQuantity * largest) return;
    side_.lots.clear();
    if (before > 0) side_.lots.push_back({order_.is_long, before, std::nullopt, before});
  }

  void Enter() {
    side_.held = order_.held;
    if (ordered_ <= 0) return;
    side_.lots.push_back({order_.is_long, ordered_, EndOf(order_, order_.price, ordered_), ordered_,
                          order_.plan ? order_.plan->risk : std::nullopt});
  }

  void Close() {
    double quantity = ordered_;
    const double negligible = kExactQuantity * quantity;
    while (quantity > negligible && !side_.lots.empty()) {
      OpenLot& lot = side_.lots.front();
      const OpenLot part = Taken(lot, std::min(lot.quantity, quantity));
      closed_.push_back(Closed(part));
      quantity = DecimalDifference(quantity, part.quantity);
      if (lot.quantity <= kExactQuantity * part.quantity) side_.lots.pop_front();
    }
    if (order_.held == 0) side_.lots.clear();
    side_.held = order_.held;
  }

  // The account drops the holding, which costs nothing.
  void Wipe() {
    for (OpenLot& lot : side_.lots) {
      closed_.push_back({.lot = std::move(lot), .exit = Exit(), .wiped = true});
    }
    side_ = {};
  }

  TradeEnd Exit() const { return EndOf(order_, order_.close.value_or(order_.price), ordered_); }

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

  Trade Closed(const OpenLot& part) const {
    Trade trade{.lot = part, .exit = Exit(), .money_per_point = order_.money_per_point};
    if (!part.entry) return trade;
    const double entry = part.entry->Counted();
    const double exit = trade.exit.Counted();
    // Never -0.
    trade.points = part.quantity *
                   (part.is_long ? DecimalDifference(exit, entry) : DecimalDifference(entry, exit));
    if (!order_.money_per_point) return trade;
    trade.money = *trade.points * *order_.money_per_point;
    if (part.risk.value_or(0) > 0) trade.r = *trade.money / *part.risk;
    return trade;
  }

  Side& side_;
  const RunOrder& order_;
  double ordered_;
  std::vector<Trade> closed_;
};

std::vector<Trade> TradeMatcher::Apply(const RunOrder& order) {
  return Matching(order.is_long ? long_ : short_, order).Apply();
}

std::vector<OpenLot> TradeMatcher::Open() const {
  std::vector<OpenLot> open(long_.lots.begin(), long_.lots.end());
  open.insert(open.end(), short_.lots.begin(), short_.lots.end());
  return open;
}

TradeList ListTrades(const std::vector<RunRecord>& account) {
  TradeMatcher matcher;
  TradeList list;
  for (const RunRecord& run : account) {
    list.trades.clear();
    for (const RunOrder& order : run.orders) {
      std::ranges::move(matcher.Apply(order), std::back_inserter(list.trades));
    }
  }
  list.open = matcher.Open();
  return list;
}

}  // namespace velumar
