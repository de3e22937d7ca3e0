#pragma once

#include "charthost/chart_model.h"
#include "charts/bar_plot.h"
#include "platform/chart_link.h"

namespace velumar {

class BarDateTicker;
class IndicatorPlots;
class PositionMarks;
class PriceBars;

// Draws a chart model and lets the mouse move its window: see BarPlot. In addition, a drag with
// Shift or the right button marks the bars to zoom to, a double click returns to the newest bar,
// and a drag of the line between two panes changes their heights.
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
  // One of the keys 1 to 9.
  void NumberPressed(int number);
  // The trader has changed heights of panes.
  void HeightsChanged(const velumar::ChartOptions& options);

 protected:
  QCPRange Bounded(const QCPRange& wanted) const override;
  void ShowPointer(QPointF pixel) override;
  void MovePointer(std::optional<QPointF> pixel) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  QCPAxisRect* AddPane();
  void AddPlottables();
  void AddLastPrice();
  // The panes that the model needs, from top to bottom.
  std::vector<QCPAxisRect*> WantedPanes() const;
  void ArrangePanes();
  // Sets the ranges of the axes, whose labels the layout measures, and fills the plottables, which
  // need the axes' pixels.
  void BeforeReplot();
  void FillPlottables();
  void ShowLastPrice();
  void ZoomToMarked(const QRect& marked);
  std::optional<int> BarAt(QPointF pixel) const;
  QRect PlotArea() const;
  // The pane above the line between two panes at that pixel.
  std::optional<std::size_t> LineAt(QPointF pixel) const;
  void DragLine(std::size_t pane, double y);
  // Reports the bar under the pointer if it is another one.
  void Hover(std::optional<int> bar);
  int ShownBar() const;
  QString ValueText(std::size_t pane, double value) const;
  void ShowPointerTexts(int bar, QPointF pixel);
  void StyleTag(QCPItemText& tag, const QColor& background, const QColor& text);

  ChartModel& model_;
  QCPAxisRect* prices_;
  QCPAxisRect* volumes_;
  PriceBars* bars_;
  PriceBars* unfinished_;
  QCPGraph* line_;
  QCPBars* up_volume_;
  QCPBars* down_volume_;
  QCPItemLine* last_line_;
  QCPItemText* last_tag_;
  std::unique_ptr<IndicatorPlots> indicators_;
  std::unique_ptr<PositionMarks> positions_;
  QCPItemText* value_tag_;
  QCPItemText* date_tag_;
  QCPMarginGroup* margins_;
  QSharedPointer<BarDateTicker> dates_;
  std::vector<QCPAxisRect*> panes_;
  std::optional<std::size_t> dragged_line_;
  std::optional<int> hovered_bar_;
};

}  // namespace velumar
