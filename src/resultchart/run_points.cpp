#include "resultchart/run_points.h"

#include <utility>

#include "results/portfolio_chart.h"

namespace velumar {

ChartPoints PointsOfRun(LedgerConnection& connection, int run) {
  PortfolioChart chart = LoadPortfolioChart(connection, run);
  ChartPoints points;
  points.hint = std::move(chart.hint);
  for (PortfolioChartRow& row : chart.rows) {
    points.labels.push_back(std::move(row.label));
    points.values.push_back(double{row.value});
  }
  return points;
}

}  // namespace velumar
