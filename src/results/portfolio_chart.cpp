#include "results/portfolio_chart.h"

#include <utility>
#include <variant>

namespace velumar {

std::vector<PortfolioChartRow> LoadPortfolioChart(LedgerConnection& connection, int archived_run) {
  LedgerRecordset records = LedgerQuery(
      connection,
      "select format(actdate & ' ' & acttime ,'dd-mmm-yy HH:MM')  as ActionDate, Portfolio  From "
      "MyPortfolio  where balancepoint <> 0 order by actdate ",
      archived_run);
  std::vector<PortfolioChartRow> rows;
  rows.reserve(records.rows.size());
  for (std::vector<LedgerValue>& record : records.rows) {
    PortfolioChartRow& row = rows.emplace_back();
    if (auto* label = std::get_if<std::string>(&record[0])) row.label = std::move(*label);
    if (const auto* value = std::get_if<double>(&record[1])) row.value = static_cast<float>(*value);
  }
  return rows;
}

}  // namespace velumar
