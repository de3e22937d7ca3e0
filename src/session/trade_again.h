#pragma once

#include <optional>
#include <vector>

#include "ledger/ledger.h"
#include "marketdata/index_cache.h"
#include "platform/chart_link.h"
#include "session/stored_bars.h"

namespace velumar {

// Playing a trade of the ledger again, in a session of its own. Both throw std::exception with the
// reason if the trade can't be played: it is part of a blind session that isn't revealed, or its
// bars are not in the data any more.

// The session to begin at the bar before the entry, as one that is resumed there: without a number
// and without a book. A run that belongs to no session has no costs, so those of `account` count.
LedgerPlayed SessionBeforeTrade(LedgerConnection& connection, const LedgerOrderKey& entry,
                                const LedgerAccount& account, IndexCache& cache);

// The entry and the exits of the trade, on these bars.
std::vector<OrderMark> MarksOfTrade(LedgerConnection& connection, const LedgerOrderKey& entry,
                                    const SeriesView& bars);

}  // namespace velumar
