#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "progress/played.h"

namespace velumar {

// In what the results of trades are compared: in R if most of them have a plan with a stop, so that
// a security with large moves counts no more than another one; else in money.
struct ResultUnit {
  bool in_r = false;

  ResultUnit(const Played& played, std::span<const std::int32_t> selection) {
    const auto with_risk = std::ranges::count_if(
        selection, [&](std::int32_t place) { return played.TradeAt(place).risk > 0; });
    in_r = 2 * with_risk > std::ssize(selection);
  }
  // Nothing if the trade has no R.
  std::optional<double> Of(const PlayedTrade& trade, double money) const {
    if (!in_r) return money;
    return trade.risk > 0 ? std::optional(money / trade.risk) : std::nullopt;
  }
  std::string Name() const { return in_r ? "R" : "money"; }
};

}  // namespace velumar
