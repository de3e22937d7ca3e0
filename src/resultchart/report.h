#pragma once

#include <string>
#include <vector>

#include "ledger/ledger.h"
#include "resultchart/chart_scene.h"
#include "results/order_list.h"

namespace velumar {

// A run on paper, as a trader hands it to a coach.
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

// All of the rows now in the ledger, or of an archived run. Throws LedgerError.
Report ReadReport(LedgerConnection& connection, int run);

}  // namespace velumar
