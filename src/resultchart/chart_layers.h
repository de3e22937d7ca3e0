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

// The portfolio as a line or area, or as a ribbon in a chart with depth. Many points in one column
// of pixels are reduced to the first, lowest, highest and last by QCPGraph.
class PortfolioLine : public QCPGraph {
 public:
  PortfolioLine(QCPAxis* places, QCPAxis* values, const ChartScene& scene)
      : QCPGraph(places, values), scene_(scene) {}

  // Takes points, type and colour from the scene.
  void SetPoints();
  void ApplyStyle();

 protected:
  void draw(QCPPainter* painter) override;
  void drawLinePlot(QCPPainter* painter, const QVector<QPointF>& lines) const override;
  QRect clipRect() const override;

 private:
  QVector<QPointF> FrontEdge() const;

  const ChartScene& scene_;
};

// The portfolio as bars or steps, as boxes in a chart with depth.
class PortfolioBars : public QCPBars {
 public:
  PortfolioBars(QCPAxis* places, QCPAxis* values, const ChartScene& scene)
      : QCPBars(places, values), scene_(scene) {}

  // Bars for the visible points, at most one for each pixel. Call when the axes have their pixels.
  void Fill();

 protected:
  void draw(QCPPainter* painter) override;
  QRect clipRect() const override;

 private:
  const ChartScene& scene_;
};

}  // namespace velumar
