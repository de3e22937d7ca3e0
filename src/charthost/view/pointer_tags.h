#pragma once

#include <qcustomplot.h>

#include "charts/palette.h"

namespace velumar {

// The texts at the ends of a chart's crosshair: a value on the price axis, a date below the panes.
class PointerTags {
 public:
  // Texts of the plot's pointer layer; see BarPlot::AddPointerText.
  PointerTags(QCPItemText* value, QCPItemText* date);

  void SetColours(const Palette& colours);
  // The value at a height of the area, at its side with the axis. Next to `last`, the tag of the
  // last price, it moves away from it as far as both can be read.
  void ShowValue(const QString& text, double y, const QRect& area, QCPAxis::AxisType side,
                 const QCPItemText& last);
  // The date below the area at `x`, inside the area's left and right edge.
  void ShowDate(const QString& text, double x, const QRect& area);

 private:
  QCPItemText* value_;
  QCPItemText* date_;
};

}  // namespace velumar
