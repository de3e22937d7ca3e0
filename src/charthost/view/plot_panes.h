#pragma once

#include <functional>
#include <vector>

#include "charthost/chart_model.h"
#include "charthost/view/indicator_plots.h"
#include "charthost/view/plot_tool.h"
#include "charts/bar_plot.h"

namespace velumar {

class BarDateTicker;
class ValueTicker;

// The panes of a chart from top to bottom: prices, volumes, and one for each indicator that needs
// one. All values belong to the axis at the right; the one at the left repeats it where the trader
// wants it. A drag of the line between two of them changes their heights.
class PlotPanes : public PlotTool {
 public:
  struct Surroundings {
    BarPlot* plot;
    QString legend_layer;
    // Adds an axis rectangle at the end of the layout.
    std::function<QCPAxisRect*()> add_rect;
    // The trader has changed heights.
    std::function<void(const ChartOptions&)> heights_changed;
  };

  PlotPanes(const ChartModel& model, Surroundings surroundings);
  PlotPanes(const PlotPanes&) = delete;
  PlotPanes& operator=(const PlotPanes&) = delete;

  QCPAxisRect& Prices() const { return *prices_; }
  QCPAxisRect& Volumes() const { return *volumes_; }
  IndicatorPlots& Indicators() { return *indicators_; }
  // From the top of the first to the bottom of the last one.
  QRect Area() const;
  // Where the values of the axes are.
  QCPAxis::AxisType ValueSide() const;
  // The text of the value at that pixel of the pane there; empty outside of the panes.
  QString ValueText(QPointF pixel) const;

  // Lays out the panes that the model needs now.
  void Arrange();
  void SetRanges();

  bool Press(const QMouseEvent& event) override;
  void Move(const QMouseEvent& event) override;
  void Release(const QMouseEvent& event) override;
  std::optional<Qt::CursorShape> CursorAt(QPointF pixel) const override;

 private:
  QCPAxisRect* Add();
  void ShowValues(QCPAxisRect& pane, bool shown) const;
  std::vector<QCPAxisRect*> Wanted() const;
  QList<double> Heights() const;
  // The pane above the line between two panes at that pixel.
  std::optional<std::size_t> LineAt(QPointF pixel) const;

  const ChartModel& model_;
  Surroundings surroundings_;
  QCPMarginGroup* margins_;
  QSharedPointer<BarDateTicker> dates_;
  QSharedPointer<ValueTicker> price_ticker_;
  QCPAxisRect* prices_;
  QCPAxisRect* volumes_;
  std::unique_ptr<IndicatorPlots> indicators_;
  std::vector<QCPAxisRect*> all_;
  std::vector<QCPAxisRect*> panes_;  // in use
  std::optional<std::size_t> dragged_line_;
};

}  // namespace velumar
