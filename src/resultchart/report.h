#pragma once

#include <string>
#include <vector>

#include "ledger/ledger.h"
#include "resultchart/chart_scene.h"
#include "results/order_list.h"

namespace velumar {

// A run on paper.
struct Report {
  struct Line {
    std::string name;
    std::string value;
  };

  std::string title;     // "ABC, daily bars"
  std::string subtitle;  // where the prices come from
  std::vector<Line> run;
  std::vector<Line> figures;
  std::vector<Line> statistics;
  ChartPoints points;
  std::vector<OrderListRow> orders;
};

// The chart of the current run (0) or an archived one. Throws LedgerError.
ChartPoints PointsOfRun(LedgerConnection& connection, int run);

// The complete report of the same run. Throws LedgerError.
Report ReadReport(LedgerConnection& connection, int run);

}  // namespace velumar
