#pragma once

#include <QStackedWidget>
#include <vector>

#include "charthost/chart_layout.h"

class QGridLayout;
class QLabel;
class QTabBar;

namespace velumar {

class ChartPane;

// The open charts below a bar with a tab for each, or a hint while there is none. The active one
// has the keys. It is alone on the screen, or with as many of its neighbours as the tiling shows;
// the crosshair moves through all of these by time.
class ChartArea : public QStackedWidget {
  Q_OBJECT

 public:
  explicit ChartArea(QWidget* parent);

  int Count() const { return static_cast<int>(charts_.size()); }
  // In the order of the tabs.
  const std::vector<ChartPane*>& Charts() const { return charts_; }
  // nullptr without charts.
  ChartPane* Active() const;
  // -1 without charts.
  int ActiveIndex() const;

  // Takes the chart over and activates it; neither this nor Remove reports it.
  void Add(ChartPane* chart);
  void Remove(ChartPane* chart);
  void Activate(ChartPane* chart);
  // The chart that many tabs to the right, in a ring.
  void MoveInRing(int step);

  Tiling ShownTiling() const { return tiling_; }
  void SetTiling(Tiling tiling);

  // How to open a chart; or for a while that this one is about to open.
  void ShowHint();
  void ShowOpening(const QString& symbol);
  // Call after titles have changed.
  void ShowTitles();

 signals:
  // The trader has made another chart the active one.
  void Activated();
  // The trader has dragged a tab to another place.
  void Moved();
  void CloseRequested(velumar::ChartPane* chart);

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void Arrange();
  void StyleTabs();
  // True if the chart is on the screen.
  bool HasTile(const ChartPane* chart) const;
  void PlaceTile(ChartPane* chart, int tile, int count);

  QLabel* hint_;
  QTabBar* tabs_;
  QGridLayout* grid_;
  std::vector<ChartPane*> charts_;
  Tiling tiling_ = Tiling::kTabs;
  bool arranging_ = false;  // the focus moves without the trader
};

}  // namespace velumar
