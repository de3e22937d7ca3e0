#include "resultchart/chart_wall.h"

#include "resultchart/chart_colours.h"

namespace velumar {

namespace {

QPolygonF Swept(QPointF from, QPointF to, QPointF depth) {
  return QPolygonF({from, to, to + depth, from + depth});
}

}  // namespace

ChartWall::ChartWall(QCPAxisRect* rect, const ChartScene& scene, const DateTicker& dates,
                     const MoneyTicker& money)
    : QCPLayerable(rect->parentPlot(), QStringLiteral("grid")),
      rect_(rect),
      scene_(scene),
      dates_(dates),
      money_(money) {}

void ChartWall::applyDefaultAntialiasingHint(QCPPainter* painter) const {
  painter->setAntialiasing(false);
}

void ChartWall::draw(QCPPainter* painter) {
  DrawWalls(*painter);
  scene_.points.values.empty() ? DrawHint(*painter) : DrawGrid(*painter);
}

void ChartWall::DrawWalls(QCPPainter& painter) const {
  const QRectF front(rect_->rect());
  painter.setPen(QPen(chart_colours::kFrame, 0));
  painter.setBrush(Qt::NoBrush);
  painter.drawRect(front.translated(scene_.depth));
  if (scene_.depth.isNull()) return;
  painter.setAntialiasing(true);
  painter.drawPolygon(Swept(front.topLeft(), front.bottomLeft(), scene_.depth));
  painter.setBrush(chart_colours::kFloor);
  painter.drawPolygon(Swept(front.bottomLeft(), front.bottomRight(), scene_.depth));
  painter.setAntialiasing(false);
}

void ChartWall::DrawGrid(QCPPainter& painter) const {
  const QRectF front(rect_->rect());
  const QPointF depth = scene_.depth;
  painter.setPen(QPen(chart_colours::kGrid, 0));
  const QCPAxis& values = *rect_->axis(QCPAxis::atLeft);
  for (const double value : money_.Marks()) {
    const QPointF edge(front.left(), values.coordToPixel(value));
    if (edge.y() <= front.top() || edge.y() >= front.bottom()) continue;
    painter.drawLine(edge, edge + depth);
    painter.drawLine(edge + depth, edge + depth + QPointF(front.width(), 0));
  }
  const QCPAxis& places = *rect_->axis(QCPAxis::atBottom);
  for (const double place : dates_.Marks()) {
    const QPointF edge(places.coordToPixel(place), front.bottom());
    painter.drawLine(edge, edge + depth);
    painter.drawLine(edge + depth, edge + depth - QPointF(0, front.height()));
  }
}

void ChartWall::DrawHint(QCPPainter& painter) const {
  painter.setPen(chart_colours::kFaint);
  QFont font = mParentPlot->font();
  font.setPixelSize(18);
  painter.setFont(font);
  painter.drawText(rect_->rect(), Qt::AlignCenter, QStringLiteral("No closed trades yet"));
}

}  // namespace velumar
