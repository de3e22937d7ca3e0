#pragma once

#include <cstdint>
#include <vector>

#include "ledger/trades.h"
#include "results/run_record.h"
#include "results/trade_list.h"

namespace velumar {

// The series of a session or run, oldest bar first, and which of its bars the trader has seen. The
// arrays must outlive the object.
struct PlayedSeries {
  const std::vector<std::int32_t>& dates;  // yyyymmdd
  const std::vector<float>& highs;
  const std::vector<float>& lows;
  const std::vector<float>& closes;
  int first = 0;   // where it began
  int newest = 0;  // the newest bar that was shown
};

// True if the series has the bars of all orders, so it is the one that was played.
bool HasBarsOfOrders(const RunRecord& record, const PlayedSeries& series);

// A trade as it is kept. Without a series, what only the bars say is empty. An entry fills at the
// close of its bar, so the bars of a trade are those after the entry's up to the exit's; a trade
// that was closed at an earlier bar, after stepping back, has none.
LedgerTrade RecordTrade(const Trade& trade, const PlayedSeries* series);

// The trades closed in the last of the records (see ReadAccount), and the bars that were played.
// Needs at least one record.
LedgerTrades RecordTrades(const std::vector<RunRecord>& account, const LedgerScopeState& state,
                          const PlayedSeries* series);

}  // namespace velumar
