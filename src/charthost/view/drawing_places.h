#pragma once

#include <QPointF>
#include <QString>

#include "charthost/chart_document.h"
#include "charthost/drawings/drawing_shape.h"

namespace velumar {

class ChartPlot;

// Where drawings are on one chart: pixels of the plot, and the moments and prices that they mean.
class DrawingPlaces {
 public:
  DrawingPlaces(const ChartPlot& plot, const ChartDocument& document)
      : plot_(plot), document_(document) {}

  TimeAxis Time() const;
  // `time` must outlive the scene.
  Scene MakeScene(const TimeAxis& time) const;
  // Whether something can be drawn there.
  bool Contains(QPointF pixel) const;
  // NaN for a price that a logarithmic scale can't show.
  Point ToPixel(double place, double price) const;
  // Snaps to the open, high, low or close of the bar there if one is close.
  Anchor AnchorAt(QPointF pixel, bool snaps) const;
  // The drawing that much further, by whole bars.
  Drawing Shifted(const Drawing& drawing, QPointF pixels) const;
  // The moment of an anchor, or of the bar that it is that far after, and its price.
  QString TextOf(const Anchor& anchor) const;

 private:
  double PlaceAt(QPointF pixel) const;
  double PriceAt(QPointF pixel) const;

  const ChartPlot& plot_;
  const ChartDocument& document_;
};

}  // namespace velumar
