#pragma once

#include <optional>
#include <vector>

#include "ledger/plans.h"
#include "results/run_record.h"

namespace velumar {

// An order that a plan can belong to.
struct PlannedOrder {
  LedgerOrderKey key = {};
  bool is_long = true;
  bool entry = true;
  int bar = 0;
  double price = 0;
  double quantity = 0;
  double held = 0;  // of an entry: what no offset has closed yet
  std::optional<LedgerPlan> plan = {};

  static PlannedOrder Of(const RunOrder& order);
};

// The plans of a session's open trades, of its last order, and the one that waits for the next.
class TradePlans {
 public:
  // Takes the order as the last one. An offset closes entries of its side, first in, first out.
  void Add(PlannedOrder order);
  // Nothing of the side is held any more.
  void CloseAll(bool is_long);
  // The same as a session had them, from its orders and the plans without an order.
  void Restore(const std::vector<RunOrder>& orders, const std::vector<LedgerPlan>& plans);
  void Clear() { *this = {}; }
  // Multiplies all prices.
  void Scale(double factor);

  // Entries of which something is held, and the last order, oldest first.
  const std::vector<PlannedOrder>& Orders() const { return orders_; }
  // Null if there is none yet, or if it has no row in the ledger.
  const PlannedOrder* Last() const;
  const std::optional<LedgerPlan>& Next() const { return next_; }

  void SetNext(std::optional<LedgerPlan> plan) { next_ = std::move(plan); }
  // Does nothing for an order that isn't listed.
  void SetPlan(LedgerOrderKey order, std::optional<LedgerPlan> plan);

 private:
  std::vector<PlannedOrder> orders_;
  std::optional<LedgerPlan> next_;
};

// Points from an entry price to the stop: above 0 if the stop is on the losing side.
double StopDistance(double stop, bool is_long, double price);
// True if the stop is on the losing side of the price and the target on the winning one.
bool FitsSide(const LedgerPlan& plan, bool is_long, double price);
// Quantity x distance to the stop x money per point; empty without a stop on the losing side.
std::optional<double> RiskOf(const LedgerPlan& plan, bool is_long, double price, double quantity,
                             double money_per_point);

}  // namespace velumar
