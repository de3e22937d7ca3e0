#pragma once

#include <QMainWindow>
#include <QPointer>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "charthost/host_keys.h"
#include "charthost/series_source.h"
#include "charthost/view/chart_settings.h"
#include "charthost/view_window.h"
#include "platform/chart_link.h"

class QMenu;
class QToolBar;

namespace velumar {

class ChartArea;
class ChartDocument;
class ChartPane;
class DrawMenu;
class DrawingDesk;
class DrawingsDialog;
class IndicatorsDialog;
class OpenDialog;
class ViewMenu;

// The main window: the open charts, the menus, the file dialog.
class MainWindow : public QMainWindow {
  Q_OBJECT

 public:
  // `report` gets a line of JSON after each change of the open charts; it may be empty.
  using Report = std::function<void(const std::string& line)>;

  // `drawings` is the file that keeps what the trader draws.
  MainWindow(const SeriesSource& source, ChartSettings& settings,
             const std::filesystem::path& drawings, Report report);

  // Does what the keys of another program ask for.
  void Act(HostAction action);
  void ShowMenu(HostMenu menu);
  bool IsMenuShown() const;

  // What Velumar asks for over its link. No window comes to the front and no focus moves. Folders
  // are clean: see CleanFolder.
  void CloseAll();
  // Shows the charts of these entries, those that are open or a new one. Throws std::exception with
  // a sentence if there is no such series.
  void OpenDirectly(const TypedChoice& choice);
  // Whether View > Compare can be chosen.
  void OfferCompare(bool offered);
  // Refreshes all charts of the folder, and shows the positions on those of the symbol. They are
  // on the screen at the return. Returns false if the folder has no chart.
  bool RefreshFolder(const std::string& folder, const std::string& symbol,
                     const ChartPositions& positions);
  void ShowPositions(const std::string& folder, const std::string& symbol,
                     const ChartPositions& positions);
  // A chart of the symbol, the active one if it is; null if none is open.
  ChartPane* ChartOf(const std::string& folder, const std::string& symbol) const;
  // The colours of Velumar's windows, for as long as "System" is chosen.
  void FollowTheme(bool dark);
  // Shown while no chart is open: how to open one, or for a while that Velumar is about to.
  void ShowHint();
  void ShowOpening(const QString& symbol);

  OpenDialog& FileDialog() { return *dialog_; }
  ChartPane* ActiveChart() const;

 signals:
  void MenuClosed();
  // The user has closed the window.
  void Closing();
  // The first chart of a series was opened, or its last one closed, by the number of its data file.
  void SeriesOpened(const QString& folder, int file_number);
  void SeriesClosed(const QString& folder, int file_number);

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  // The orders and holdings of the run, for a chart of its series that is opened between two bars.
  struct Played {
    std::string folder;
    std::string symbol;
    ChartPositions positions;

    bool IsOf(const ChartDocument& document) const;
  };

  void BuildDialogs();
  void BuildMenus();
  void BuildDrawing();

  void OpenFile();
  void OpenChart(const SeriesRequest& request);
  // Opens the chart; into an empty window with all others of the layout.
  void AddChart(const SeriesRequest& request);
  ChartPane* AddPane(const SeriesRequest& request, const std::map<int, Frame>& frames);
  void AddLayout(const SeriesRequest& request);
  // Copies of the active chart until the tiling is full.
  void FillTiles();
  void SaveLayout();
  void CloseChart(ChartPane* chart);
  void RemoveChart(ChartPane* chart);
  // The number of charts that show the series of this one.
  std::ptrdiff_t ChartsLike(const ChartDocument& document) const;
  void RefreshActive();
  void SetOptions(const ChartOptions& options);
  void ApplyTheme();
  // Updates titles and menus after a change, and reports it.
  void Changed(const char* event);

  const SeriesSource& source_;
  ChartSettings& settings_;
  Report report_;
  ChartOptions options_;
  std::vector<std::string> problems_;  // of the saved indicators, at the start
  std::optional<bool> velumar_dark_;
  Played played_;
  ChartArea* area_;
  QPointer<ChartPane> first_;  // opened into the empty window
  OpenDialog* dialog_;
  IndicatorsDialog* indicators_dialog_;
  QMenu* file_menu_;
  ViewMenu* view_menu_;
  DrawingDesk* desk_;
  DrawMenu* draw_menu_;
  QToolBar* drawing_bar_;
  DrawingsDialog* drawings_dialog_;
};

}  // namespace velumar
