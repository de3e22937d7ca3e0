#pragma once

#include "charthost/chart_model.h"
#include "charts/bar_plot.h"
#include "platform/chart_link.h"

namespace velumar {

class BarDateTicker;
class PositionMarks;
class PriceBars;

// Draws a chart model and lets the mouse move its window: see BarPlot. In addition, a drag with
// Shift or the right button marks the bars to zoom to, and a double click returns to the newest
// bar.
class ChartPlot : public BarPlot {
  Q_OBJECT

 public:
  ChartPlot(ChartModel& model, QWidget* parent);
  ~ChartPlot() override;

  void SetColours(const Palette& colours) override;
  // Orders as arrows at their bar and price, held sides as lines. The next drawing shows them.
  void SetPositions(const ChartPositions& positions);
  QRect PriceArea() const { return prices_->rect(); }
  // Call after the model has changed. A hidden plot is drawn when it is shown.
  void ModelChanged(RefreshPriority when = rpQueuedReplot);

 signals:
  // The bar under the pointer; -1: none.
  void BarHovered(int bar);

 protected:
  QCPRange Bounded(const QCPRange& wanted) const override;
  void ShowPointer(QPointF pixel) override;
  void MovePointer(std::optional<QPointF> pixel) override;
  void mousePressEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  void AddPlottables();
  void AddLastPrice();
  void ArrangeRects();
  // Sets the ranges of the axes, whose labels the layout measures, and fills the plottables, which
  // need the axes' pixels.
  void BeforeReplot();
  void FillPlottables();
  void FillAverages();
  void ShowLastPrice();
  void ZoomToMarked(const QRect& marked);
  std::optional<int> BarAt(QPointF pixel) const;
  QRect PlotArea() const;
  void ShowPointerTexts(int bar, QPointF pixel);
  void StyleTag(QCPItemText& tag, const QColor& background, const QColor& text);

  ChartModel& model_;
  QCPAxisRect* prices_;
  QCPAxisRect* volumes_;
  PriceBars* bars_;
  QCPGraph* line_;
  std::array<QCPGraph*, 2> averages_;
  QCPBars* up_volume_;
  QCPBars* down_volume_;
  QCPItemLine* last_line_;
  QCPItemText* last_tag_;
  std::unique_ptr<PositionMarks> positions_;
  QCPItemText* value_tag_;
  QCPItemText* date_tag_;
  bool volume_arranged_ = true;
};

}  // namespace velumar
