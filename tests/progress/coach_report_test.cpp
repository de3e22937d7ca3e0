#include "progress/coach_report.h"

#include <array>

#include "ledger/ledger.h"
#include "progress/played_ledger.h"

namespace velumar {
namespace {

using testing::Contains;
using testing::HasSubstr;

// A trade for each setup, in three sessions that were not played in the order of their days. All
// trades break even but two, which make the same.
TEST(CoachReport, CountsFromTheFirstToTheLastAndSaysWhatItLeavesOut) {
  for (const int setups : {30, 31}) {
    LedgerConnection ledger([](std::string_view date) { return std::string(date); });
    LedgerOpen(ledger, ":memory:");
    std::vector<PlayedScope> scopes(3);
    std::vector<LedgerEntryPlan> plans;
    for (std::size_t i = 0; i < 3; ++i) {
      scopes[i].state.scope = LedgerScope::Session(LedgerBeginRun(ledger, {}, {}));
      scopes[i].state.touched = "2026-11-0" + std::string(1, "897"[i]) + " 10:00:00";
      scopes[i].trades.first_day = scopes[i].trades.last_day =
          std::array{20070301, 20070205, 20070214}[i];
    }
    for (int i = 0; i < setups; ++i) {
      LedgerTrade& trade = scopes[static_cast<std::size_t>(i) % 3].trades.trades.emplace_back();
      trade.entry = {.order = {1, i + 1}, .bar = 0};
      trade.exit.bar = i;
      trade.money = i == 4 || i == 7 ? 5 : 0;
      plans.push_back({trade.entry.order, "setup " + std::to_string(i)});
    }
    const Played played = PlayedOf(scopes, plans);
    const CoachReport report = MakeCoachReport(
        ledger, {played, scopes, {}}, Summarise(played, Select(played, {}), {.count = 100}));
    EXPECT_THAT(report.subtitle, HasSubstr("from 2026-11-07 to 2026-11-09"));
    EXPECT_THAT(report.facts, Contains(std::pair<std::string, std::string>(
                                  "Days on the charts", "from 2007-02-05 to 2007-03-01")));
    const CoachTable& table = report.tables.at(0);
    EXPECT_EQ(table.note.find("Listed are the 30 setups") != std::string::npos, setups == 31);
    for (const auto& row : table.rows) {
      EXPECT_EQ(row.at(2), row.at(4) == "5.00" ? "100.00 %" : "0.00 %") << "won";
    }
    ASSERT_EQ(report.trades.size(), 1U) << "nothing was lost";
    ASSERT_EQ(report.trades[0].trades.size(), 2U) << "a break-even trade is not among the best";
    EXPECT_THAT(report.trades[0].trades[0].lines, Contains(HasSubstr("Held 4 bars")));
  }
}

}  // namespace
}  // namespace velumar
