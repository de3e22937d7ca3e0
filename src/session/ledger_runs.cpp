#include "session/ledger_runs.h"

#include "session/market_family.h"

namespace velumar {

bool LedgerRuns::Begin() {
  return Guarded(LedgerBeginRun,
                 "No run was begun, and the ledger of the last one stays as it was.");
}

void LedgerRuns::NoteSeries() {
  Guarded(LedgerDescribeRun, "The ledger doesn't tell from which bar on this run goes.");
}

LedgerRun LedgerRuns::Described() const {
  LedgerRun run{.directory = session_.Run.directory,
                .symbol = session_.Run.symbol,
                .interval = session_.Run.interval,
                .start_date = {},
                .start_time = {},
                .market = IsStockMarket(session_) ? "stock" : "futures",
                .starting_money = session_.Balance,
                .margin = session_.InitMargin,
                .money_per_point = session_.ProfitPerContract};
  if (session_.HasBar(session_.BarIndex)) {
    const auto bar = static_cast<std::size_t>(session_.BarIndex);
    run.start_date = std::to_string(session_.BarDate[bar]);
    run.start_time = std::to_string(session_.BarTime[bar]);
  }
  return run;
}

bool LedgerRuns::Guarded(void (*change)(LedgerConnection&, const LedgerRun&),
                         std::string_view problem) {
  if (!ledger_.CanWrite()) return true;
  try {
    change(ledger_, Described());
    return true;
  } catch (const LedgerError& error) {
    boxes_.Show(std::string(problem) + "\n" + error.what(), BoxIcon::kExclamation);
    return false;
  }
}

}  // namespace velumar
