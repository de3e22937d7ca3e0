#include "trading/drill_list.h"

#include <algorithm>

#include "progress/played_ledger.h"
#include "session/played_trades.h"

namespace velumar {

Played ReadPlayed(LedgerConnection& ledger, IndexCache& cache) {
  return PlayedOf(PlayedScopes(ledger, cache), LedgerEntryPlans(ledger));
}

std::vector<DrillResult> ListDrills(LedgerConnection& ledger, IndexCache& cache) {
  std::vector<LedgerDrill> drills = LedgerDrills(ledger);
  if (drills.empty()) return {};
  std::vector<DrillResult> results = DrillResults(std::move(drills), ReadPlayed(ledger, cache));
  std::ranges::reverse(results);
  return results;
}

}  // namespace velumar
