#pragma once

#include <vector>

#include "ledger/ledger.h"
#include "marketdata/index_cache.h"
#include "progress/drill_results.h"

namespace velumar {

// All that was played, brought up to date (session/played_trades.h). Throws LedgerError.
Played ReadPlayed(LedgerConnection& ledger, IndexCache& cache);

// The drills of the ledger with their results, the newest first. Throws LedgerError.
std::vector<DrillResult> ListDrills(LedgerConnection& ledger, IndexCache& cache);

}  // namespace velumar
