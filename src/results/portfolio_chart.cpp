#include "results/portfolio_chart.h"

#include <cstddef>
#include <string_view>

#include "results/trade_list.h"

namespace velumar {

namespace {

constexpr std::string_view kOrdersWithPoints =
    "select format(actdate & ' ' & acttime ,'dd-mmm-yy HH:MM')  as ActionDate, Portfolio  From "
    "MyPortfolio  where balancepoint <> 0 order by actdate ";
constexpr std::string_view kOffsets =
    "select format(actdate & ' ' & acttime ,'dd-mmm-yy HH:MM')  as ActionDate, Portfolio  From "
    "MyPortfolio  where Loffset <> 0 or Soffset <> 0 order by actdate ";

std::vector<PortfolioChartRow> Rows(LedgerConnection& connection, std::string_view select,
                                    LedgerScope scope) {
  const LedgerRecordset records = LedgerQuery(connection, select, scope);
  std::vector<PortfolioChartRow> rows;
  rows.reserve(records.rows.size());
  for (const std::vector<LedgerValue>& record : records.rows) {
    rows.push_back(
        {ValueAs<std::string>(record[0]), static_cast<float>(ValueAs<double>(record[1]))});
  }
  return rows;
}

// Trades can be closed without an offset row: an offset of more than was held books nothing.
std::string Hint(LedgerConnection& connection, LedgerScope scope) {
  const std::size_t closed = ListTrades(ReadAccount(connection, scope)).trades.size();
  if (closed == 0) return "No closed trades yet";
  return std::to_string(closed) + (closed == 1 ? " closed trade" : " closed trades") +
         " without P/L";
}

}  // namespace

PortfolioChart LoadPortfolioChart(LedgerConnection& connection, LedgerScope scope) {
  PortfolioChart chart{Rows(connection, kOrdersWithPoints, scope), {}};
  if (chart.rows.empty()) chart.rows = Rows(connection, kOffsets, scope);
  if (chart.rows.empty()) chart.hint = Hint(connection, scope);
  return chart;
}

}  // namespace velumar
