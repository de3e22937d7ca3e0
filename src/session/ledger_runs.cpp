#include "session/ledger_runs.h"

#include "base/number_text.h"
#include "session/market_family.h"

namespace velumar {

void LedgerRuns::Begin() { Guarded(LedgerBeginRun); }

void LedgerRuns::NoteSeries() { Guarded(LedgerDescribeRun); }

LedgerRun LedgerRuns::Described() const {
  LedgerRun run{.directory = session_.DataDir,
                .symbol = session_.Symbol,
                .interval = desktop_.form1().cbxPeriod.Text(),
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

void LedgerRuns::Guarded(void (*change)(LedgerConnection&, const LedgerRun&)) {
  if (!ledger_.CanWrite()) return;
  try {
    change(ledger_, Described());
  } catch (const LedgerError& error) {
    boxes_.Show("The ledger of the last run stays as it was.\n" + std::string(error.what()),
                BoxIcon::kExclamation);
  }
}

}  // namespace velumar
