#pragma once

#include <QWidget>

#include "charthost/chart_document.h"
#include "charthost/view/chart_colors.h"

class QLabel;

namespace velumar {

class ChartPlot;
class ReadoutBar;

// One open chart as people see it: the values of a bar, the plot, and sentences where something is
// missing. It never asks anything, so keys from outside always reach the window.
class ChartPane : public QWidget {
  Q_OBJECT

 public:
  ChartPane(const SeriesSource& source, SeriesRequest request, const ChartOptions& options,
            QWidget* parent);

  void Refresh();
  void SetOptions(const ChartOptions& options);
  void ApplyColors();

  const ChartDocument& Document() const { return document_; }
  // "AAPL, Daily"
  QString Title() const;
  ViewWindow& Window() { return document_.Model().Window(); }
  // To be called after Window has been moved from outside.
  void WindowMoved();
  ChartPlot& Plot() { return *plot_; }

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void ShowState();
  void ShowBar(int bar);
  void PlaceNotice();

  ChartDocument document_;
  ReadoutBar* readout_;
  QLabel* error_;
  ChartPlot* plot_;
  QLabel* notice_;
  int hovered_bar_ = -1;
  int shown_interval_ = -2;  // whose readout widths are kept
};

}  // namespace velumar
