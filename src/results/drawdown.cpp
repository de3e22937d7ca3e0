#include "results/drawdown.h"

namespace velumar {

std::optional<Drawdown> MaximumDrawdown(const RunRecord& run) {
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

}  // namespace velumar
