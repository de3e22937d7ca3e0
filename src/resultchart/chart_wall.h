#pragma once

#include <qcustomplot.h>

#include "resultchart/chart_scene.h"
#include "resultchart/chart_tickers.h"

namespace velumar {

// What lies behind the series: the backdrop with its shadow, walls and floor, and the grid.
class ChartWall : public QCPLayerable {
 public:
  ChartWall(QCPAxisRect* rect, const ChartScene& scene, const DateTicker& dates,
            const MoneyTicker& money);

 protected:
  void draw(QCPPainter* painter) override;
  void applyDefaultAntialiasingHint(QCPPainter* painter) const override;

 private:
  void DrawBackdrop(QCPPainter& painter) const;
  void DrawWalls(QCPPainter& painter) const;
  void DrawGrid(QCPPainter& painter) const;
  void DrawHint(QCPPainter& painter) const;

  QCPAxisRect* rect_;
  const ChartScene& scene_;
  const DateTicker& dates_;
  const MoneyTicker& money_;
};

}  // namespace velumar
