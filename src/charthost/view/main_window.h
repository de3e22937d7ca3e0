#pragma once

#include <QMainWindow>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "charthost/host_keys.h"
#include "charthost/series_source.h"
#include "charthost/view/chart_settings.h"
#include "charthost/view_window.h"
#include "platform/chart_link.h"

class QActionGroup;
class QLabel;
class QMenu;
class QStackedWidget;
class QTabWidget;

namespace velumar {

class ChartPane;
class IndicatorsDialog;
class OpenDialog;

// The main window: a tab for each open chart, the menus, the file dialog.
class MainWindow : public QMainWindow {
  Q_OBJECT

 public:
  // `report` gets a line of JSON after each change of the open charts; it may be empty.
  using Report = std::function<void(const std::string& line)>;

  MainWindow(const SeriesSource& source, ChartSettings& settings, Report report);

  // Does what the keys of another program ask for.
  void Act(HostAction action);
  void ShowMenu(HostMenu menu);
  bool IsMenuShown() const;

  // What Velumar asks for over its link. No window comes to the front and no focus moves. Folders
  // are clean: see CleanFolder.
  void CloseAll();
  // Shows the chart of these entries, in its tab if it is open. Throws std::exception with a
  // sentence if there is no such series.
  void OpenDirectly(const TypedChoice& choice);
  // Refreshes all charts of the folder, and shows the positions on those of the symbol. The chart
  // in front is on the screen at the return. Returns false if the folder has no chart.
  bool RefreshFolder(const std::string& folder, const std::string& symbol,
                     const ChartPositions& positions);
  void ShowPositions(const std::string& folder, const std::string& symbol,
                     const ChartPositions& positions);
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

 protected:
  void changeEvent(QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  void BuildCentre();
  void BuildFileMenu();
  void BuildViewMenu();
  // Entries of which one is checked.
  template <typename T>
  void AddChoice(QMenu& menu, T ChartOptions::*option,
                 std::initializer_list<std::pair<QString, T>> entries);
  void AddToggles();
  void BuildIndicatorsDialog();
  // The intervals that the chart in front can show.
  void FillIntervalMenu();
  void AddWindowActions();
  void HideMenus();
  QMenu* AddMenu(const QString& title);
  void AddToggle(const std::function<QString()>& text,
                 const std::function<bool&(ChartOptions&)>& option);

  void OpenFile();
  void OpenChart(const SeriesRequest& request);
  void AddChart(const SeriesRequest& request);
  void CloseChart(int index);
  void RemoveChart(int index);
  void RefreshActive();
  void MoveInRing(int step);
  void ChartActivated();
  void SetOptions(const ChartOptions& options);
  void ShowOptions();
  void ApplyTheme();
  void ApplyColours();
  void StyleTabs();
  ChartPane* Chart(int index) const;
  // Updates the titles of tabs and window after a change, and reports it.
  void Changed(const char* event);

  const SeriesSource& source_;
  ChartSettings& settings_;
  Report report_;
  ChartOptions options_;
  std::vector<std::string> problems_;  // of the saved indicators, at the start
  std::optional<bool> velumar_dark_;
  QLabel* hint_;
  QStackedWidget* centre_;
  QTabWidget* tabs_;
  OpenDialog* dialog_;
  IndicatorsDialog* indicators_dialog_;
  QMenu* file_menu_;
  QMenu* view_menu_;
  QMenu* interval_menu_;
  QActionGroup* interval_group_;
  std::vector<std::function<void()>> option_views_;  // update the check marks of the menus
};

}  // namespace velumar
