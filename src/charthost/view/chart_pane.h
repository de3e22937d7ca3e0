#pragma once

#include <qcustomplot.h>

#include "charthost/chart_document.h"
#include "charts/palette.h"
#include "charts/picture_file.h"
#include "platform/chart_link.h"

class QLabel;
class QPushButton;

namespace velumar {

class ChartPlot;
class DrawingDesk;
class DrawingTool;
class ReadoutBar;
struct ReadoutItem;

// One open chart: the values of a bar, the plot, and a message if something is missing. It never
// opens a box, so keys from outside always reach the window.
class ChartPane : public QWidget {
  Q_OBJECT

 public:
  // `frames` are the frames to show, by interval of the series.
  ChartPane(const SeriesSource& source, SeriesRequest request, std::map<int, Frame> frames,
            const ChartOptions& options, QWidget* parent);

  // Lets the trader draw on the chart, and shows what is kept. `desk` must outlive the chart.
  void AddDrawings(DrawingDesk& desk);
  // nullptr before AddDrawings.
  DrawingTool* Drawings() const { return drawings_; }

  void Refresh();
  // The same, without waiting for events: the next repaint of the window shows it.
  void RefreshNow();
  // Velumar refreshes the chart, so an empty one gives no advice how to.
  void ExpectRefreshes();
  // Shown with the next drawing.
  void SetPositions(const ChartPositions& positions);
  void SetOptions(const ChartOptions& options);

  const ChartDocument& Document() const { return document_; }
  // "AAPL, Daily"
  QString Title() const;
  void ShowFrame(Frame frame);
  ViewWindow& Window() { return document_.Model().Window(); }
  // Call after Window was moved from outside.
  void WindowMoved();
  ChartPlot& Plot() { return *plot_; }
  // What the chart shows, without the crosshair; valid for as long as the chart is open.
  PlotPicture AsPicture();
  // Among other charts on the screen the active one has a line around it.
  void ShowAsTile(bool tiled, bool active);

 signals:
  // The trader has changed the options in the chart itself.
  void OptionsChanged(const velumar::ChartOptions& options);
  void FrameChanged();

 protected:
  void changeEvent(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  const Palette& Colours() const;
  void ApplyColours();
  void ShowState(QCustomPlot::RefreshPriority when = QCustomPlot::rpQueuedReplot);
  void ShowProblem();
  void ShowBar(int bar);
  // The values of the indicators without a pane of their own.
  void AddOverlays(int bar, std::vector<ReadoutItem>& items) const;
  void PlaceNotice();
  void PlaceNewest();

  ChartDocument document_;
  ReadoutBar* readout_;
  QLabel* error_;
  ChartPlot* plot_;
  QLabel* notice_;
  QPushButton* newest_;
  DrawingDesk* desk_ = nullptr;
  DrawingTool* drawings_ = nullptr;
  bool expects_refreshes_ = false;
  bool active_tile_ = false;
  int hovered_bar_ = -1;
  QString shown_title_;  // whose readout widths are kept
};

}  // namespace velumar
