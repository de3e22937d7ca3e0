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
  std::string hint;  // why there are no rows, as one line; empty when there are some
};

// The money after each order that carries points of closed trades, by date: from the first offset
// on, without the rows where the last offsets of both sides cancel. When no order carries points,
// the money after each offset instead, so that trades closed at their entry price still show.
// Of the rows now in the ledger, or of an archived run. Throws LedgerError.
PortfolioChart LoadPortfolioChart(LedgerConnection& connection, int archived_run = 0);

}  // namespace velumar
