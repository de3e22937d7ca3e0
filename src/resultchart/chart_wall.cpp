#include "resultchart/chart_wall.h"

namespace velumar {
namespace {

constexpr int kShadowOffset = 7;

QPolygonF Swept(QPointF from, QPointF to, QPointF depth) {
  return QPolygonF({from, to, to + depth, from + depth});
}

}  // namespace

void ChartWall::draw(QCPPainter* painter) {
  if (scene_.shadow) DrawBackdrop(*painter);
  DrawWalls(*painter);
  scene_.points.values.empty() ? DrawHint(*painter) : DrawGrid(*painter);
}

void ChartWall::DrawBackdrop(QCPPainter& painter) const {
  const QRect backdrop = rect_->outerRect();
  painter.fillRect(backdrop.translated(kShadowOffset, kShadowOffset), scene_.colours.shadow);
  painter.setPen(QPen(scene_.colours.border, 0));
  painter.setBrush(scene_.colours.ground);
  painter.drawRect(backdrop);
}

void ChartWall::DrawWalls(QCPPainter& painter) const {
  const QRectF front(rect_->rect());
  const Palette& colours = scene_.WallColours();
  const QBrush wall = scene_.white_wall ? QBrush(Qt::white) : QBrush(Qt::NoBrush);
  painter.setPen(QPen(colours.border, 0));
  painter.setBrush(wall);
  painter.drawRect(front.translated(scene_.depth));
  if (scene_.depth.isNull()) return;
  painter.setAntialiasing(true);
  painter.drawPolygon(Swept(front.topLeft(), front.bottomLeft(), scene_.depth));
  painter.setBrush(colours.floor);
  painter.drawPolygon(Swept(front.bottomLeft(), front.bottomRight(), scene_.depth));
  painter.setAntialiasing(false);
}

void ChartWall::DrawGrid(QCPPainter& painter) const {
  const QRectF front(rect_->rect());
  const QPointF depth = scene_.depth;
  painter.setPen(QPen(scene_.WallColours().strong_grid, 0));
  const QCPAxis& values = *rect_->axis(QCPAxis::atLeft);
  for (const double value : values.tickVector()) {
    const QPointF edge(front.left(), values.coordToPixel(value));
    if (edge.y() <= front.top() || edge.y() >= front.bottom()) continue;
    painter.drawLine(edge, edge + depth);
    painter.drawLine(edge + depth, edge + depth + QPointF(front.width(), 0));
  }
  const QCPAxis& places = *rect_->axis(QCPAxis::atBottom);
  for (const double place : places.tickVector()) {
    const QPointF edge(places.coordToPixel(place), front.bottom());
    painter.drawLine(edge, edge + depth);
    painter.drawLine(edge + depth, edge + depth - QPointF(0, front.height()));
  }
}

void ChartWall::DrawHint(QCPPainter& painter) const {
  painter.setPen(scene_.colours.muted);
  QFont font = mParentPlot->font();
  font.setPixelSize(18);
  painter.setFont(font);
  painter.drawText(rect_->rect(), Qt::AlignCenter, QString::fromStdString(scene_.points.hint));
}

}  // namespace velumar
