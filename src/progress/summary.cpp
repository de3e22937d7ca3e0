#include "progress/summary.h"

#include <utility>

#include "progress/findings.h"

namespace velumar {

ProgressSummary Summarise(const Played& played, Selection trades, const RoundOptions& options) {
  ProgressSummary summary;
  summary.trades = std::move(trades);
  summary.curve = ChainEquity(played, summary.trades);
  summary.figures = ComputeFigures(played, summary.trades, summary.curve, options);
  summary.skills =
      CompareWithRandomTraders(played, ComparedGroups(played, summary.trades), options);
  summary.risk = ComputeRiskAhead(played, summary.trades, options);
  return summary;
}

std::vector<TradeGroup> ComparedGroups(const Played& played, const Selection& selection) {
  std::vector<TradeGroup> groups = GroupsBySetup(played, selection);
  groups.insert(groups.begin(), {"all", selection});
  return groups;
}

std::vector<std::string> SummaryFindings(const ProgressSummary& summary) {
  std::vector<std::string> lines = FindingsOf(summary.skills, summary.risk);
  const std::string drawn = summary.figures.over_sessions ? "sessions" : "trades";
  lines.push_back("Intervals hold the true figure in 95 of 100 cases if later " + drawn +
                  " are like these; they draw from the " + drawn +
                  ". Excursions are bounds: what came first within a bar is not known.");
  return lines;
}

}  // namespace velumar
