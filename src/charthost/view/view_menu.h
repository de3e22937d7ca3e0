#pragma once

#include <QMenu>
#include <functional>
#include <vector>

#include "charthost/chart_document.h"
#include "charthost/chart_layout.h"
#include "charthost/chart_model.h"

class QActionGroup;

namespace velumar {

using WindowMove = void (*)(ViewWindow&);

// The menu View: how the charts look, and what the active one shows.
class ViewMenu : public QMenu {
  Q_OBJECT

 public:
  ViewMenu(const QString& title, QWidget* parent);

  // Checks the entries of these options.
  void ShowOptions(const ChartOptions& options);
  void ShowTiling(Tiling tiling);
  // The chart that the entries act on, nullptr without one.
  void ShowChart(const ChartDocument* chart);
  void OfferCompare(bool offered);

 signals:
  void RefreshChosen();
  void OptionsChosen(const velumar::ChartOptions& options);
  void FrameChosen(velumar::Frame frame);
  void TilingChosen(velumar::Tiling tiling);
  void MoveChosen(velumar::WindowMove move);
  void IndicatorsChosen();
  void CompareChosen();

 private:
  // Entries of which one is checked.
  template <typename T>
  void AddChoice(QMenu& menu, T ChartOptions::*option,
                 std::initializer_list<std::pair<QString, T>> entries);
  void AddToggle(QMenu& menu, const QString& text, bool ChartOptions::*option);
  void AddMoves();
  void FillIntervals();
  void AddTilings();

  ChartOptions options_;
  const ChartDocument* chart_ = nullptr;
  QMenu* intervals_;
  QAction* compare_;
  bool offers_compare_ = true;
  QActionGroup* interval_group_;
  QActionGroup* tilings_;                           // in the order of Tiling
  std::vector<std::function<void()>> check_marks_;  // update those of the options
};

}  // namespace velumar
