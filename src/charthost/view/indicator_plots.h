#pragma once

#include <qcustomplot.h>

#include <functional>
#include <vector>

#include "charthost/chart_model.h"
#include "charts/palette.h"

namespace velumar {

class PaneLegend;

// The colour of a line of an indicator.
QColor IndicatorColour(const LineRow& line, const ChosenIndicator& choice, const Palette& colours);

// Draws the indicators of a chart: those of the price and the volume over these, every other one in
// a pane of its own, with its name and its values at a bar in the corner.
class IndicatorPlots {
 public:
  struct Surroundings {
    QCustomPlot* plot;
    QCPAxisRect* prices;
    QCPAxisRect* volumes;
    QString legend_layer;
    std::function<QCPAxisRect*()> add_pane;
  };

  IndicatorPlots(const ChartModel& model, Surroundings surroundings);

  void SetColours(const Palette& colours);
  // Prepares panes and lines for the indicators that the model has now.
  void Arrange();
  // The panes in use, from top to bottom.
  std::vector<QCPAxisRect*> Panes() const;
  // The indicator in the pane at that place of Panes().
  const ModelIndicator& Of(std::size_t pane) const;
  void SetRanges();
  // The values of the columns that the model has laid out.
  void Fill();
  // The values at a bar; -1: none.
  void ShowLegends(int bar);

 private:
  struct DrawnLine {
    QCPGraph* graph = nullptr;
    QCPBars* bars = nullptr;  // of a histogram
  };
  struct Pane {
    QCPAxisRect* rect;
    PaneLegend* legend;
    ValueFormat format = ValueFormat::kShare;
  };
  // What is drawn, to recognise a change.
  struct Drawn {
    const IndicatorRow* row;
    int colour;

    bool operator==(const Drawn&) const = default;
  };

  std::vector<Drawn> Wanted() const;
  void Clear();
  void UsePane(const IndicatorRow& row);
  void AddPane();
  void AddLevels(QCPAxisRect& rect, const std::vector<double>& levels);
  DrawnLine AddLine(const LineRow& line, const ChosenIndicator& choice, QCPAxisRect& rect);

  const ChartModel& model_;
  Surroundings surroundings_;
  Palette colours_ = Palette::Light();
  std::vector<Pane> panes_;  // also those not in use now
  std::size_t panes_used_ = 0;
  std::vector<Drawn> drawn_;
  std::vector<std::vector<DrawnLine>> lines_;  // by indicator
  std::vector<QCPItemLine*> levels_;
};

}  // namespace velumar
