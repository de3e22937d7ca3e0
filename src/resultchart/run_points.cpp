#include "resultchart/run_points.h"

#include <utility>

#include "results/portfolio_chart.h"

namespace velumar {

ChartPoints PointsOfRun(LedgerConnection& connection, int run) {
  ChartPoints points;
  for (PortfolioChartRow& row : LoadPortfolioChart(connection, run)) {
    points.labels.push_back(std::move(row.label));
    points.values.push_back(double{row.value});
  }
  return points;
}

}  // namespace velumar
