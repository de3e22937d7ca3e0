#pragma once

#include <qcustomplot.h>

#include "charthost/measure.h"
#include "charthost/view/plot_tool.h"

namespace velumar {

class ChartPlot;

// Measures on the prices while Shift is held: a drag from one place to another, or steps of the
// crosshair with Ctrl+Shift+Left and Ctrl+Shift+Right.
class MeasureTool : public PlotTool {
 public:
  // Adds its parts to the plot, which owns them.
  explicit MeasureTool(ChartPlot& plot);
  MeasureTool(const MeasureTool&) = delete;
  MeasureTool& operator=(const MeasureTool&) = delete;

  bool Press(const QMouseEvent& event) override;
  void Move(const QMouseEvent& event) override;
  bool Key(const QKeyEvent& event) override;
  void KeyReleased(const QKeyEvent& event) override;
  void SetColours(const Palette& colours) override;
  void BeforeReplot() override;

 private:
  void MeasureTo(const std::optional<ChartPlace>& place);
  void Show();
  void Hide();

  ChartPlot& plot_;
  QCPItemRect* area_;
  QCPItemText* text_;
  std::optional<ChartPlace> from_;
  ChartPlace to_;
};

}  // namespace velumar
