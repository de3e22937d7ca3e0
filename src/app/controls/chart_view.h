#pragma once

#include <QPixmap>

#include "app/controls/control_view.h"
#include "forms/chart.h"
#include "resultchart/result_plot.h"

namespace velumar {

// A chart in the colours of the window, saved as it is shown.
class ChartView : public ResultPlot, public ControlView {
 public:
  ChartView(FormCanvas& canvas, QWidget& window, Chart& chart);
  QWidget& Widget() override { return *this; }
  void Update() override;

 private:
  FormCanvas& canvas_;
  Chart& chart_;
  std::shared_ptr<const ChartRows> rows_;  // as shown
};

// The same chart as ink on paper, at the control's size; a hand can drag it about.
class ChartPictureView : public QWidget, public ControlView {
 public:
  ChartPictureView(FormCanvas& canvas, QWidget& window, ChartPicture& picture);
  QWidget& Widget() override { return *this; }
  void Update() override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  void Print(const PrintJob& job);

  FormCanvas& canvas_;
  ChartPicture& picture_;
  ResultPlot plot_;  // never shown itself
  std::shared_ptr<const ChartRows> rows_;
  ChartContent drawn_;  // what is in `pixels_`
  QPixmap pixels_;
};

}  // namespace velumar
