#pragma once

#include <QMainWindow>
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
class ChartPane;
class DrawMenu;
class DrawingDesk;
class DrawingsDialog;
class IndicatorsDialog;
class OpenCharts;
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
  // The colours of Velumar's windows, for as long as "System" is chosen.
  void FollowTheme(bool dark);
  // Shown while no chart is open: how to open one, or for a while that Velumar is about to.
  void ShowHint();
  void ShowOpening(const QString& symbol);

  OpenCharts& Charts() { return *charts_; }
  OpenDialog& FileDialog() { return *dialog_; }
  ChartPane* ActiveChart() const;

 signals:
  void MenuClosed();
  // The user has closed the window.
  void Closing();

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  void BuildDialogs();
  void BuildMenus();
  void BuildDrawing();

  void OpenFile();
  void OpenChart(const SeriesRequest& request);
  void AddChart(const SeriesRequest& request);
  void CloseChart(ChartPane* chart);
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
  ChartArea* area_;
  DrawingDesk* desk_;
  OpenCharts* charts_;
  OpenDialog* dialog_;
  IndicatorsDialog* indicators_dialog_;
  QMenu* file_menu_;
  ViewMenu* view_menu_;
  DrawMenu* draw_menu_;
  QToolBar* drawing_bar_;
  DrawingsDialog* drawings_dialog_;
};

}  // namespace velumar
