#pragma once

#include <array>
#include <optional>
#include <span>

#include "progress/parallel.h"
#include "progress/trade_filter.h"

namespace velumar {

// What the next hundred trades may bring if they are like the selected ones: trades are drawn from
// them, each with its net result as a share of the account at that time (the session's starting
// money and what its selected trades before had made), and the position grows and shrinks with the
// account. Sessions are drawn whole, from their first trade, if at least eight have trades, so that
// losses that came together stay together. (Vince 1990, "Portfolio Management Formulas"; Kaufman
// 2013, "Trading Systems and Methods", on the risk of ruin.)

inline constexpr int kTradesAhead = 100;
inline constexpr double kRuinShare = 0.5;  // of the account now; as much lost is ruin
inline constexpr std::array<double, 3> kFallShares = {0.1, 0.2, 0.3};
// The size that is looked for keeps a fall of kWorstFall less likely than kAcceptedRisk.
inline constexpr double kWorstFall = 0.3;
inline constexpr double kAcceptedRisk = 0.01;
inline constexpr double kLargestSize = 10;

struct RiskAhead {
  int trades = 0;   // that were drawn from
  double ruin = 0;  // share of the rounds in which the account falls to kRuinShare
  // Share of the rounds with a fall from the highest account of kFallShares.
  std::array<double, kFallShares.size()> falls = {};
  // The largest size that keeps the risk, as a multiple of the one that was traded. At most
  // kLargestSize, which then is only a lower bound.
  double size = 0;
  // The same as the share of the account risked on each trade, on average; empty if no trade had a
  // plan with a stop.
  std::optional<double> risk_per_trade;
};

// Nothing if fewer than kTooFewTrades trades have an account above 0 to compare with.
std::optional<RiskAhead> ComputeRiskAhead(const Played& played,
                                          std::span<const std::int32_t> selection,
                                          const RoundOptions& options);

}  // namespace velumar
