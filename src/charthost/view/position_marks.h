#pragma once

#include <qcustomplot.h>

#include <array>
#include <vector>

#include "charthost/chart_model.h"
#include "charts/palette.h"
#include "platform/chart_link.h"

namespace velumar {

// What was traded, on a price chart: an arrow for each order, whose tip is at the price of its bar
// (an entry is filled, an exit hollow; an arrow up buys, one down sells; those of an earlier trade
// are grey), and a line at the average price of each held side, with quantity and open profit at
// its left end, where they cover no new bar. Stops and targets are lines from the bar of their
// trade: thin, dashed while their plan waits for an order, thick once they were reached.
class PositionMarks {
 public:
  // Adds its parts to the plot, which owns them.
  PositionMarks(QCustomPlot& plot, QCPAxisRect& prices, QCPAxis& bars);

  void Set(const ChartPositions& positions) { positions_ = positions; }
  const ChartPositions& Positions() const { return positions_; }
  void SetColours(const Palette& colours);
  // Fills the parts for what the model shows.
  void Show(const ChartModel& model);

 private:
  struct HeldMark {
    QCPItemLine* line;
    QCPItemText* tag;
  };

  HeldMark NewMark();
  void ShowPlan(const PlanLine& line, const HeldMark& mark, const ChartModel& model);
  void ShowOrders(const ChartModel& model);
  void ShowHeld(const HeldLine& held, const ChartModel& model);
  void StyleArrows();

  QCustomPlot& plot_;
  QCPAxisRect& prices_;
  QCPAxis& bars_;
  Palette colours_ = Palette::Light();
  ChartPositions positions_;
  std::array<QCPGraph*, 8> arrows_;  // those of an earlier trade last, by direction, then entry
  std::array<HeldMark, 2> held_;     // long, short
  std::vector<HeldMark> plans_;      // as many as were ever needed
};

}  // namespace velumar
