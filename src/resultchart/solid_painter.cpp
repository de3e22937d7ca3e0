#include "resultchart/solid_painter.h"

namespace velumar {

namespace {

constexpr int kLighter = 130;
constexpr int kDarker = 150;
constexpr int kOutlineDarker = 210;
constexpr double kLeastOutlined = 5;  // pixels

}  // namespace

SolidPainter::SolidPainter(QPainter& painter, QPointF depth, const QColor& colour)
    : painter_(painter),
      depth_(depth),
      front_(colour),
      top_(colour.lighter(kLighter)),
      side_(colour.darker(kDarker)),
      outline_(colour.darker(kOutlineDarker)) {}

void SolidPainter::Face(const QPolygonF& face, const QColor& colour, bool outlined) {
  // A pen of the face's colour closes the hair lines between neighbours.
  painter_.setPen(QPen(outlined ? outline_ : colour, 0));
  painter_.setBrush(colour);
  painter_.drawPolygon(face);
}

QPolygonF SolidPainter::Swept(QPointF from, QPointF to) const {
  return QPolygonF({from, to, to + depth_, from + depth_});
}

void SolidPainter::Box(const QRectF& front) {
  const bool outlined = front.width() >= kLeastOutlined;
  Face(Swept(front.topRight(), front.bottomRight()), side_, outlined);
  Face(Swept(front.topLeft(), front.topRight()), top_, outlined);
  Face(QPolygonF({front.topLeft(), front.topRight(), front.bottomRight(), front.bottomLeft()}),
       front_, outlined);
}

void SolidPainter::Ribbon(QPointF from, QPointF to) {
  // A part that climbs steeper than the depth turns its lower side to the viewer.
  const QPointF along = to - from;
  const bool seen_from_below = along.x() * depth_.y() - along.y() * depth_.x() > 0;
  Face(Swept(from, to), seen_from_below ? side_ : along.y() > 0 ? front_ : top_, false);
  painter_.setPen(QPen(outline_, 0));
  painter_.drawLine(from, to);
  painter_.drawLine(from + depth_, to + depth_);
}

}  // namespace velumar
