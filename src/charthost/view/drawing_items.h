#pragma once

#include <qcustomplot.h>

#include <vector>

#include "charthost/drawings/drawing_shape.h"
#include "charts/palette.h"

namespace velumar {

// A shape as it is to be seen.
struct ShownShape {
  Shape shape;
  int colour = 0;  // index into the colours of the palette
  bool selected = false;
};

// The parts of a plot that draw shapes of pixels within one axis rectangle. They are kept from one
// drawing to the next.
class DrawingItems {
 public:
  // The plot owns the parts.
  DrawingItems(QCustomPlot& plot, QCPAxisRect& area) : plot_(plot), area_(area) {}

  void Show(const std::vector<ShownShape>& shapes, const Palette& colours);

 private:
  template <typename Item>
  Item& Next(std::vector<Item*>& items, std::size_t& used);
  void ShowLines(const ShownShape& shown, const QColor& colour);
  void ShowFill(const Shape& shape, QColor colour);
  void ShowLabels(const Shape& shape, const QColor& colour);
  void ShowHandles(const Shape& shape, const QColor& colour, const QColor& ground);

  QCustomPlot& plot_;
  QCPAxisRect& area_;
  std::vector<QCPItemLine*> lines_;
  std::vector<QCPItemRect*> rects_;
  std::vector<QCPItemText*> texts_;
  std::vector<QCPItemEllipse*> handles_;
  std::size_t used_lines_ = 0;
  std::size_t used_rects_ = 0;
  std::size_t used_texts_ = 0;
  std::size_t used_handles_ = 0;
};

}  // namespace velumar
