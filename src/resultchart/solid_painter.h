#pragma once

#include <QColor>
#include <QPainter>
#include <QPolygonF>

namespace velumar {

// Paints bodies that go from the front of a chart `depth` to the back, which lies up and to the
// right. So tops and right sides are seen, and what stands farther right covers what is left of it:
// paint from left to right.
class SolidPainter {
 public:
  SolidPainter(QPainter& painter, QPointF depth, const QColor& colour);

  // A box with its front at `front`. Outlined where it is wide enough for that.
  void Box(const QRectF& front);
  // The part of a ribbon between two points of its front edge.
  void Ribbon(QPointF from, QPointF to);

 private:
  void Face(const QPolygonF& face, const QColor& colour, bool outlined);
  // The face that an edge of the front leaves behind on its way to the back.
  QPolygonF Swept(QPointF from, QPointF to) const;

  QPainter& painter_;
  QPointF depth_;
  QColor front_;
  QColor top_;
  QColor side_;
  QColor outline_;
};

}  // namespace velumar
