#include "session/plan_levels.h"

#include <algorithm>

#include "base/number_text.h"

namespace velumar {

namespace {

// The first bar that reaches the level of an order, up to the current one.
std::optional<int> ReachedAt(const SimSession& session, const PlanLevel& level) {
  if (level.order == nullptr) return std::nullopt;
  const auto price = static_cast<float>(level.price);
  const LedgerPlan& plan = *level.order->plan;
  const int since = std::max(level.bar, level.stop ? plan.stop_since : plan.target_since);
  const int last = std::min<int>(session.BarIndex, session.LastArrayIndex());
  for (int bar = std::max(since, -1) + 1; bar <= last; ++bar) {
    if (BarReaches(session, bar, price, level.order->is_long == level.stop)) return bar;
  }
  return std::nullopt;
}

void AddLevels(const LedgerPlan& plan, const PlannedOrder* order, int bar,
               std::vector<PlanLevel>& levels) {
  if (plan.stop) levels.push_back({true, *plan.stop, order, bar});
  if (plan.target) levels.push_back({false, *plan.target, order, bar});
}

std::vector<PlanLevel> LevelsOfTrades(const SimSession& session) {
  std::vector<PlanLevel> levels;
  for (const PlannedOrder& order : session.Plans.Orders()) {
    if (!order.plan || order.held <= 0 || order.bar > session.BarIndex) continue;
    AddLevels(*order.plan, &order, order.bar, levels);
  }
  return levels;
}

}  // namespace

// Closes only, as in series without a range, have 0 as high and low.
bool BarReaches(const SimSession& session, int bar, float price, bool from_above) {
  const auto i = static_cast<std::size_t>(bar);
  const float close = session.BarClose[i];
  const bool has_range = session.BarHigh[i] != 0 || session.BarLow[i] != 0;
  if (from_above) return std::min(close, has_range ? session.BarLow[i] : close) <= price;
  return std::max(close, has_range ? session.BarHigh[i] : close) >= price;
}

std::vector<PlanLevel> PlanLevels(const SimSession& session) {
  std::vector<PlanLevel> levels = LevelsOfTrades(session);
  for (PlanLevel& level : levels) level.reached = ReachedAt(session, level).has_value();
  if (const auto& next = session.Plans.Next()) {
    AddLevels(*next, nullptr, session.BarIndex, levels);
  }
  return levels;
}

std::string ReachedText(const SimSession& session, int before) {
  std::string text;
  for (const PlanLevel& level : LevelsOfTrades(session)) {
    const std::optional<int> bar = ReachedAt(session, level);
    if (!bar || *bar <= before) continue;
    text += text.empty() ? "" : ", ";
    text += (level.stop ? "Stop " : "Target ") + PlanPriceText(level.price) + " of " +
            (level.order->is_long ? "Long " : "Short ") +
            ReadableNumberText(static_cast<float>(level.order->held));
  }
  return text.empty() ? text : text + " reached.";
}

std::string PlanPriceText(double price) {
  return PatternText(static_cast<float>(price), "0.00##################");
}

}  // namespace velumar
