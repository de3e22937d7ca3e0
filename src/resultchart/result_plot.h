#pragma once

#include <qcustomplot.h>

#include "resultchart/chart_scene.h"
#include "resultchart/thinning.h"

namespace velumar {

// The portfolio's value over the closings of a run.
class ResultPlot : public QCustomPlot {
 public:
  ResultPlot();

  // Both lists have one length. Without points a sentence stands in place of axes and titles.
  void SetPoints(ChartPoints points);
  void SetType(ChartType type) { scene_.type = type; }

  // Draws the chart as a picture of that many units, 96 to an inch. Vectors where the painter's
  // device takes them.
  void PaintTo(QCPPainter& painter, const QSize& size);

 private:
  void SetFonts();
  void SetTitles(bool with_points);
  void StyleAxes();
  void Arrange(const QSize& size);

  ChartScene scene_;
  QCPAxisRect* rect_;
  QCPTextElement* title_;
};

}  // namespace velumar
