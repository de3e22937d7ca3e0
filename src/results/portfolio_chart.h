#pragma once

#include <string>
#include <vector>

#include "ledger/ledger.h"

namespace velumar {

struct PortfolioChartRow {
  std::string label;  // "25-Jan-07 16:30"
  float value = 0;    // realised money after the order
};

struct PortfolioChart {
  std::vector<PortfolioChartRow> rows;
  std::string hint;  // one line that says why there are no rows; empty if there are some
};

// The money after each order that has points of closed trades, by date: from the first offset on,
// without the rows where the last offsets of both sides cancel. If no order has points, the money
// after each offset, so that trades closed at their entry price are still shown.
// Throws LedgerError.
PortfolioChart LoadPortfolioChart(LedgerConnection& connection, LedgerScope scope = kCurrentRun);

}  // namespace velumar
