#include "session/trade_plans.h"

#include <algorithm>
#include <utility>

#include "base/decimal.h"

namespace velumar {

PlannedOrder PlannedOrder::Of(const RunOrder& order) {
  const bool entry = order.kind == RunOrder::Kind::kEntry;
  const double quantity = order.quantity.value_or(0);
  return {.key = order.key,
          .is_long = order.is_long,
          .entry = entry,
          .bar = order.bar.value_or(0),
          .price = order.close.value_or(order.price),
          .quantity = quantity,
          .held = entry ? quantity : 0,
          .plan = order.plan};
}

void TradePlans::Add(PlannedOrder order) {
  double to_close = order.entry ? 0 : order.quantity;
  for (PlannedOrder& open : orders_) {
    if (open.is_long != order.is_long) continue;
    const double closed = std::min(open.held, to_close);
    to_close -= closed;
    open.held -= closed;
    if (open.held <= kExactQuantity * open.quantity) open.held = 0;
  }
  std::erase_if(orders_, [](const PlannedOrder& old) { return old.held == 0; });
  orders_.push_back(std::move(order));
}

void TradePlans::CloseAll(bool is_long) {
  std::erase_if(orders_, [is_long](const PlannedOrder& order) {
    return order.is_long == is_long && order.held > 0;
  });
}

void TradePlans::Restore(const std::vector<RunOrder>& orders,
                         const std::vector<LedgerPlan>& plans) {
  Clear();
  for (const RunOrder& order : orders) {
    const bool wiped = order.kind == RunOrder::Kind::kWiped;
    if (wiped || HeldNothingBefore(order)) CloseAll(order.is_long);
    if (!wiped && order.quantity != 0) Add(PlannedOrder::Of(order));
    if (!wiped && order.held == 0) CloseAll(order.is_long);
  }
  const auto waiting = std::ranges::find_if(plans, &LedgerPlan::Waits);
  if (waiting != plans.end()) next_ = *waiting;
}

void TradePlans::Scale(double factor) {
  const auto scale = [factor](std::optional<LedgerPlan>& plan) {
    if (!plan) return;
    for (std::optional<double>* price : {&plan->stop, &plan->target}) {
      if (*price) **price *= factor;
    }
  };
  scale(next_);
  for (PlannedOrder& order : orders_) {
    order.price *= factor;
    scale(order.plan);
  }
}

const PlannedOrder* TradePlans::Last() const { return orders_.empty() ? nullptr : &orders_.back(); }

void TradePlans::SetPlan(LedgerOrderKey order, std::optional<LedgerPlan> plan) {
  const auto found = std::ranges::find(orders_, order, &PlannedOrder::key);
  if (found != orders_.end()) found->plan = std::move(plan);
}

double StopDistance(double stop, bool is_long, double price) {
  return is_long ? DecimalDifference(price, stop) : DecimalDifference(stop, price);
}

bool FitsSide(const LedgerPlan& plan, bool is_long, double price) {
  return (!plan.stop || StopDistance(*plan.stop, is_long, price) > 0) &&
         (!plan.target || StopDistance(*plan.target, is_long, price) < 0);
}

std::optional<double> RiskOf(const LedgerPlan& plan, bool is_long, double price, double quantity,
                             double money_per_point) {
  if (!plan.stop) return std::nullopt;
  const double distance = StopDistance(*plan.stop, is_long, price);
  return distance > 0 ? std::optional(quantity * distance * money_per_point) : std::nullopt;
}

}  // namespace velumar
