#pragma once

#include <functional>
#include <vector>

#include "ledger/trades.h"
#include "marketdata/index_cache.h"
#include "results/trade_list.h"
#include "session/sim_session.h"

namespace velumar {

// Keeping closed trades in the ledger with what the bars say about them.

// Trades of the session in memory as they are kept, with what its bars say.
std::vector<LedgerTrade> RecordedTrades(const SimSession& session,
                                        const std::vector<Trade>& closed);

// Keeps all trades of the session in memory and its bars, when it ends. Without a ledger that can
// be written, or if the session is not recorded, nothing is kept. Throws LedgerError.
void KeepTrades(LedgerConnection& connection, const SimSession& session);

// All that were played, in the order in which they were last begun. Trades that are outdated or
// were never kept, as in a ledger of an earlier version, are computed from the data directories
// where these still have the bars, and kept if the ledger can be written. A blind session that is
// not revealed is masked. `progress` is called after each of them with how many of how many are
// done; when it returns false, the rest is left out of the result. Throws LedgerError.
std::vector<PlayedScope> PlayedScopes(
    LedgerConnection& connection, IndexCache& cache,
    const std::function<bool(std::size_t done, std::size_t all)>& progress = {});

}  // namespace velumar
