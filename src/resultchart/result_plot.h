#pragma once

#include "charts/bar_plot.h"
#include "resultchart/chart_scene.h"

namespace velumar {

inline constexpr QLatin1String kPlotTitle("Portfolio Graph.");

class PortfolioBars;
class PortfolioLine;

// The portfolio's value over the closings of a run. For wheel and drag see BarPlot; a double click
// shows all points.
class ResultPlot : public BarPlot {
  Q_OBJECT

 public:
  explicit ResultPlot(QWidget* parent = nullptr);

  // Without points the hint replaces axes and titles.
  void SetPoints(ChartPoints points);
  void SetStyle(const ChartStyle& style);
  void SetColours(const Palette& colours) override;

  const ChartScene& Scene() const { return scene_; }
  // The visible points.
  AxisSpan Span() const;
  AxisSpan WholeSpan() const;
  // Limited to the existing points.
  void ShowSpan(AxisSpan span);
  // That many pixels at the lower end are covered on the screen; axes and titles stay above them.
  void SetCovered(int pixels);

  // Draws the chart at that size in units, without the cross; as vectors if the painter's device
  // takes them.
  void PaintTo(QCPPainter& painter, const QSize& size);

 protected:
  QCPRange Bounded(const QCPRange& wanted) const override;
  void ShowPointer(QPointF pixel) override;

 private:
  void Changed();
  void Arrange(const QSize& size);
  void ShowPointerText(std::size_t point, QPointF centre);

  ChartScene scene_;
  QCPAxisRect* rect_;
  QCPTextElement* title_;
  PortfolioLine* line_;
  PortfolioBars* bars_;
  QCPItemText* pointer_text_;
  int covered_ = 0;
};

}  // namespace velumar
