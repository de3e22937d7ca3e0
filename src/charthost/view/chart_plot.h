#pragma once

#include "charthost/chart_model.h"
#include "charthost/measure.h"
#include "charts/bar_plot.h"
#include "platform/chart_link.h"

namespace velumar {

class PlotPanes;
class PlotTool;
class PointerTags;
class PositionMarks;
class PricePlots;

// Draws a chart model and lets the mouse move its window: see BarPlot. In addition, a drag with the
// right button marks the bars to zoom to, a double click returns to the newest bar, and Ctrl+Left
// and Ctrl+Right step the crosshair. Everything else that mouse and keys do on the chart is a
// PlotTool.
class ChartPlot : public BarPlot {
  Q_OBJECT

 public:
  ChartPlot(ChartModel& model, QWidget* parent);
  ~ChartPlot() override;

  void SetColours(const Palette& colours) override;
  // Orders as arrows at their bar and price, held sides as lines. The next drawing shows them.
  void SetPositions(const ChartPositions& positions);
  const ChartPositions& Positions() const;
  // Events go to the tools added first.
  void AddTool(std::unique_ptr<PlotTool> tool);
  QCPAxisRect& Prices() const;
  const ChartModel& Model() const { return model_; }
  // The layer of what moves with the pointer. It can be drawn again by itself.
  using BarPlot::PointerLayer;
  // The bar and price at that pixel; nothing outside the price pane or the bars.
  std::optional<ChartPlace> PlaceAt(QPointF pixel) const;
  // Moves the crosshair that many bars from where it is, or from the newest bar, to the bar's
  // close, and brings it into view. Nothing without bars.
  std::optional<ChartPlace> StepPointer(int bars);
  // Shows the crosshair at that moment for as long as the pointer is on another chart.
  void FollowPointer(const std::optional<BarMoment>& moment);
  // Draws the chart as it is on the screen, without the crosshair.
  void PaintTo(QCPPainter& painter);
  // Call after the model has changed. A hidden plot is drawn when it is shown.
  void ModelChanged(RefreshPriority when = rpQueuedReplot);

 signals:
  // The bar under the crosshair; -1: none.
  void BarHovered(int bar);
  // The pointer is at a bar of that moment; nothing: at none.
  void PointerMoved(const std::optional<velumar::BarMoment>& moment);
  // The keys go to this chart now.
  void FocusGained();
  // One of the keys 1 to 9.
  void NumberPressed(int number);
  // The trader has changed heights of panes.
  void HeightsChanged(const velumar::ChartOptions& options);

 protected:
  QCPRange Bounded(const QCPRange& wanted) const override;
  void ShowPointer(QPointF pixel) override;
  void ShowNoPointer() override;
  void MovePointer(std::optional<QPointF> pixel) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  // Sets the ranges of the axes, whose labels the layout measures, and fills the plottables, which
  // need the axes' pixels.
  void BeforeReplot();
  void ZoomToMarked(const QRect& marked);
  // The first tool that takes the event.
  PlotTool* Taker(const std::function<bool(PlotTool&)>& takes) const;
  Qt::CursorShape CursorAt(QPointF pixel) const;
  std::optional<int> BarAt(QPointF pixel) const;
  // Reports the bar under the crosshair if it is another one.
  void Hover(std::optional<int> bar);
  int ShownBar() const;

  ChartModel& model_;
  PlotPanes* panes_;  // one of the tools
  std::unique_ptr<PricePlots> bars_;
  std::unique_ptr<PositionMarks> positions_;
  std::unique_ptr<PointerTags> tags_;
  std::vector<std::unique_ptr<PlotTool>> tools_;
  PlotTool* pressed_ = nullptr;  // has taken the press of the button that is held
  std::optional<int> hovered_bar_;
  std::optional<BarMoment> followed_;  // on another chart
};

}  // namespace velumar
