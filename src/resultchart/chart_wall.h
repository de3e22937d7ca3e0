#pragma once

#include <qcustomplot.h>

#include "resultchart/chart_scene.h"

namespace velumar {

// The background of a result chart: the backdrop with its shadow, walls and floor, and the grid, or
// the hint if there are no points.
class ChartWall : public QCPLayerable {
 public:
  ChartWall(QCPAxisRect* rect, const ChartScene& scene)
      : QCPLayerable(rect->parentPlot(), QStringLiteral("grid")), rect_(rect), scene_(scene) {}

 protected:
  void draw(QCPPainter* painter) override;
  void applyDefaultAntialiasingHint(QCPPainter* painter) const override {
    painter->setAntialiasing(false);
  }

 private:
  void DrawBackdrop(QCPPainter& painter) const;
  void DrawWalls(QCPPainter& painter) const;
  void DrawGrid(QCPPainter& painter) const;
  void DrawHint(QCPPainter& painter) const;

  QCPAxisRect* rect_;
  const ChartScene& scene_;
};

}  // namespace velumar
