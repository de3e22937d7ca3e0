#include "session/ledger_runs.h"

#include "session/market_family.h"

namespace velumar {

bool LedgerRuns::Begin() {
  if (!ledger_.CanWrite()) return true;
  try {
    LedgerBeginRun(ledger_, Described());
    return true;
  } catch (const LedgerError& error) {
    boxes_.Show("No run was begun, and the ledger of the last one stays as it was.\n" +
                    std::string(error.what()),
                BoxIcon::kExclamation);
    return false;
  }
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

}  // namespace velumar
