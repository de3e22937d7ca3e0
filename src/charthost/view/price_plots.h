#pragma once

#include <qcustomplot.h>

#include "charthost/chart_model.h"
#include "charts/palette.h"

namespace velumar {

class PriceBars;

// What a chart shows of the bars themselves: candles, bars or a line, volumes, the last price.
class PricePlots {
 public:
  // Adds its parts to the plot, which owns them.
  PricePlots(const ChartModel& model, QCPAxisRect& prices, QCPAxisRect& volumes);
  PricePlots(const PricePlots&) = delete;
  PricePlots& operator=(const PricePlots&) = delete;

  void SetColours(const Palette& colours);
  // The columns that the model has laid out.
  void Fill();
  // The text on the axis at the last price; hidden if that is out of view.
  const QCPItemText& LastTag() const { return *last_tag_; }

 private:
  void AddLastPrice();
  void ShowLastPrice();

  const ChartModel& model_;
  QCPAxisRect& rect_;
  QCPAxis& places_;  // of the bars
  QCPAxis& prices_;
  Palette colours_ = Palette::Light();
  std::array<PriceBars*, 3> bars_;  // by their part
  QCPGraph* line_;
  std::array<QCPBars*, 2> volumes_;  // of rising and of falling bars
  QCPItemLine* last_line_;
  QCPItemText* last_tag_;
};

}  // namespace velumar
