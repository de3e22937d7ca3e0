#pragma once

#include <string>

#include "ledger/ledger.h"
#include "platform/virtual_platform.h"
#include "session/sim_session.h"
#include "support/matchers.h"
#include "support/recorded_run.h"
#include "trading/orders.h"

namespace velumar {

// An order desk at a bar, with a ledger in memory.
struct OrderFixture : testing::Test {
  OrderFixture() {
    LedgerOpen(ledger, ":memory:");
    session.Symbol = session.Run.symbol = "ABC";
    session.Run.interval = "D";
    AddBar(100);
  }

  // Futures with these figures, or a stock market.
  void Account(float margin, float profit, const std::string& commission, float money) {
    run.commission = commission;
    session.InitMargin = margin;
    session.ProfitPerContract = profit;
    session.Balance = session.Portfolio = money;
  }
  void StockMarket() { session.DataDir = "/data/SET"; }

  // Adds a bar with this close and makes it the current one.
  void AddBar(float close) {
    const auto bar = static_cast<int>(session.BarDate.size());
    session.BarDate.push_back(20070101 + bar % 28 + bar / 28 % 12 * 100);
    session.BarTime.push_back(163000);
    for (auto* prices : {&session.BarOpen, &session.BarHigh, &session.BarLow, &session.BarClose}) {
      prices->push_back(close);
    }
    session.BarIndex = static_cast<std::int16_t>(bar);
    session.MarketPrice = close;
    RevaluePositions(session);
  }

  OrderResult Order(OrderResult (OrderDesk::*order)(), const std::string& quantity) {
    run.quantity = quantity;
    return (desk.*order)();
  }
  using Row = std::vector<LedgerValue>;
  std::vector<Row> Ask(const std::string& select) { return LedgerQuery(ledger, select).rows; }
  std::size_t Rows() { return Ask("select * From MyPortfolio").size(); }
  // Columns of the newest row.
  Row Newest(const std::string& columns) {
    return Ask("select " + columns + " From MyPortfolio order by rowid desc").at(0);
  }

  SimSession session;
  RecordedRun run;
  VirtualPlatform outside;
  Platform platform = outside.References();
  LedgerConnection ledger{[](std::string_view date) { return std::string(date); }};
  RecordedCharts charts;
  OrderDesk desk{session, run, run, platform, ledger, charts};
};

}  // namespace velumar
