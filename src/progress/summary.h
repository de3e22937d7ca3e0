#pragma once

#include <optional>
#include <string>
#include <vector>

#include "progress/progress_figures.h"
#include "progress/random_traders.h"
#include "progress/ruin.h"

namespace velumar {

// All that is computed of a selection of trades.
struct ProgressSummary {
  Selection trades;
  EquityCurve curve;
  ProgressFigures figures;
  std::vector<SkillOrLuck> skills;  // of the whole selection, then of its setups
  std::optional<RiskAhead> risk;
};

ProgressSummary Summarise(const Played& played, Selection trades, const RoundOptions& options);

// The groups that are compared with random traders: the whole selection, then its setups.
std::vector<TradeGroup> ComparedGroups(const Played& played, const Selection& selection);

// What the summary says in plain sentences, see FindingsOf, and how far its intervals go.
std::vector<std::string> SummaryFindings(const ProgressSummary& summary);

}  // namespace velumar
