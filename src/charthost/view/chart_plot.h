#pragma once

#include <qcustomplot.h>

#include <optional>

#include "charthost/chart_model.h"
#include "charthost/view/axis_tickers.h"
#include "charthost/view/chart_layers.h"

namespace velumar {

class PointerLayer;

// Draws a chart model and lets the mouse move its window: the wheel zooms at the pointer, a drag
// pans, a drag with Shift or the right button marks a stretch to zoom into, a double click goes
// back to the newest bar.
class ChartPlot : public QCustomPlot {
  Q_OBJECT

 public:
  ChartPlot(ChartModel& model, QWidget* parent);

  void SetColors(const ChartColors& colors);
  // To be called after the model has changed; draws with the next round of the event loop.
  void ModelChanged();

 signals:
  // The bar under the pointer, -1 when there is none.
  void BarHovered(int bar);

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  enum class Drag { kNone, kPan, kMark };

  QCPAxisRect* AddRect(int row, ValueKind kind);
  void StyleAxis(QCPAxis* axis);
  void ArrangeRects();
  void BeforeReplot();
  void SetPointer(std::optional<QPointF> position);
  double PlotWidth() const;
  double PlaceAt(double pixel) const;

  ChartModel& model_;
  BarChartScene scene_;
  QCPAxisRect* prices_;
  QCPAxisRect* volumes_;
  PointerLayer* pointer_;
  bool volume_arranged_ = false;
  Drag drag_ = Drag::kNone;
  QPointF drag_start_;
  double drag_first_ = 0;
  double drag_last_ = 0;
};

}  // namespace velumar
