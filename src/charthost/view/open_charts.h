#pragma once

#include <QObject>
#include <QPointer>
#include <cstddef>
#include <map>
#include <string>

#include "charthost/series_source.h"
#include "charthost/view/chart_settings.h"
#include "platform/chart_link.h"

namespace velumar {

class ChartArea;
class ChartDocument;
class ChartPane;
class DrawingDesk;

// The charts that are open: opens and closes them, keeps their layout, and shows on them what the
// run trades. Folders are clean: see CleanFolder.
class OpenCharts : public QObject {
  Q_OBJECT

 public:
  // New charts are shown with the options as they are then. All must outlive the object.
  OpenCharts(const SeriesSource& source, ChartSettings& settings, const ChartOptions& options,
             DrawingDesk& desk, ChartArea& area, QObject* parent);

  // Opens the chart; into an empty window with all others of the layout.
  void Open(const SeriesRequest& request);
  // A copy of the active chart.
  void OpenCopy();
  // Copies of the active chart until the tiling is full.
  void FillTiles();
  void Close(ChartPane* chart);
  // The layout stays as it was saved.
  void CloseAll();
  void SaveLayout();

  // Refreshes all charts of the folder, and shows the positions on those of the symbol. Returns
  // false if the folder has no chart.
  bool Refresh(const std::string& folder, const std::string& symbol,
               const ChartPositions& positions);
  void ShowPositions(const std::string& folder, const std::string& symbol,
                     const ChartPositions& positions);
  // Another run begins: charts that open from now on show no positions before it sends some.
  void ForgetRun() { played_ = {}; }
  // A chart of the symbol, the active one if it is; null if none is open.
  ChartPane* ChartOf(const std::string& folder, const std::string& symbol) const;

 signals:
  // The trader has changed the options in a chart itself.
  void OptionsChanged(const velumar::ChartOptions& options);
  // The event, as StateLine names it.
  void Changed(const char* event);
  // The first chart of a series was opened, or its last one closed, by the number of its data file.
  void SeriesOpened(const QString& folder, int file_number);
  void SeriesClosed(const QString& folder, int file_number);

 private:
  // The orders and holdings of the run, for a chart of its series that is opened between two bars.
  struct Played {
    std::string folder;
    std::string symbol;
    ChartPositions positions;
  };

  ChartPane* AddPane(const SeriesRequest& request, const std::map<int, Frame>& frames);
  void AddLayout(const SeriesRequest& request);
  void Remove(ChartPane* chart);
  // The number of charts that show the series of this one.
  std::ptrdiff_t ChartsLike(const ChartDocument& document) const;

  const SeriesSource& source_;
  ChartSettings& settings_;
  const ChartOptions& options_;
  DrawingDesk& desk_;
  ChartArea& area_;
  Played played_;
  QPointer<ChartPane> first_;  // opened into the empty window
};

}  // namespace velumar
