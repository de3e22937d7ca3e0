#pragma once

#include <qcustomplot.h>

#include "resultchart/chart_scene.h"
#include "resultchart/thinning.h"

namespace velumar {

// The one series of the chart, flat or with depth.
class PortfolioSeries : public QCPAbstractPlottable {
 public:
  PortfolioSeries(QCPAxis* places, QCPAxis* values, const ChartScene& scene);

  double selectTest(const QPointF& pos, bool only_selectable, QVariant* details) const override;
  QCPRange getKeyRange(bool& found, QCP::SignDomain sign) const override;
  QCPRange getValueRange(bool& found, QCP::SignDomain sign,
                         const QCPRange& key_range) const override;

 protected:
  void draw(QCPPainter* painter) override;
  void drawLegendIcon(QCPPainter* painter, const QRectF& rect) const override;
  QRect clipRect() const override;

 private:
  AxisSpan Span() const;
  QPolygonF FrontLine() const;
  QRectF Front(const Slot& slot, double share) const;
  double BaseValue() const;
  QPointF Pixel(double place, double value) const;

  void DrawLine(QCPPainter& painter) const;
  void DrawArea(QCPPainter& painter) const;
  void DrawBars(QCPPainter& painter) const;
  void DrawRibbon(QCPPainter& painter) const;
  // Boxes that each take `share` of their slot's width.
  void DrawBoxes(QCPPainter& painter, double share) const;

  const ChartScene& scene_;
};

}  // namespace velumar
