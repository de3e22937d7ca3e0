#pragma once

#include <qcustomplot.h>

#include <optional>

#include "resultchart/chart_scene.h"
#include "resultchart/thinning.h"

namespace velumar {

inline constexpr QLatin1String kPlotTitle("Portfolio Graph.");
// A plot is laid out in units of which an inch of paper has so many.
inline constexpr double kUnitsPerInch = 96;

class ChartPointer;

// The portfolio's value over the closings of a run. The wheel zooms at the pointer, a drag pans, a
// double click shows the whole.
class ResultPlot : public QCustomPlot {
  Q_OBJECT

 public:
  explicit ResultPlot(QWidget* parent = nullptr);

  // Both lists have one length. Without points the hint stands in place of axes and titles.
  void SetPoints(ChartPoints points);
  void SetType(ChartType type);
  void SetSeriesColour(const QColor& colour);
  void SetShadow(bool shadow);
  // The wall behind the series painted solid white.
  void SetWhiteWall(bool white);
  void SetColours(const ChartColours& colours);

  const ChartScene& Scene() const { return scene_; }
  // The part of the points that is in sight.
  AxisSpan Span() const;
  AxisSpan WholeSpan() const;
  // As much of it as there are points for.
  void ShowSpan(AxisSpan span);
  // So many pixels at the lower end are covered on the screen; axes and titles stay above them.
  void SetCovered(int pixels);

  // Draws the chart as a picture of that many units, 96 to an inch, without the pointer's cross.
  // Vectors where the painter's device takes them.
  void PaintTo(QCPPainter& painter, const QSize& size);

 Q_SIGNALS:
  // By the wheel or the mouse.
  void SpanMoved();

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  void MoveTo(AxisSpan span);
  void Changed();
  void Arrange(const QSize& size);
  void StyleAxes();
  void SetTitles(bool with_points);
  void Follow(std::optional<QPointF> pixel);

  ChartScene scene_;
  QCPAxisRect* rect_;
  QCPTextElement* title_;
  ChartPointer* pointer_;
  int covered_ = 0;
  std::optional<double> grip_;  // the place on the axis that a drag holds
};

}  // namespace velumar
