#include "resultchart/chart_layers.h"

#include <cmath>

namespace velumar {
namespace {

// The face between an edge of the front and the same edge at the back.
QPolygonF Swept(QPointF from, QPointF to, QPointF depth) {
  return QPolygonF({from, to, to + depth, from + depth});
}

// Draws solids from the front of a chart to its back, which is `depth` pixels up and to the right.
// Tops and right sides are visible, and solids cover those to the left: draw from left to right.
class SolidPainter {
 public:
  SolidPainter(QPainter& painter, QPointF depth, const QColor& colour)
      : painter_(painter), depth_(depth), front_(colour) {}

  void Box(const QRectF& front) {
    constexpr double kLeastOutlined = 5;  // pixels
    const bool outlined = front.width() >= kLeastOutlined;
    Face(Swept(front.topRight(), front.bottomRight(), depth_), side_, outlined);
    Face(Swept(front.topLeft(), front.topRight(), depth_), top_, outlined);
    Face(front, front_, outlined);
  }

  // A segment of a ribbon, between two points of its front edge.
  void Ribbon(QPointF from, QPointF to) {
    // A segment that rises more steeply than the depth shows its lower side.
    const QPointF along = to - from;
    const bool seen_from_below = along.x() * depth_.y() - along.y() * depth_.x() > 0;
    Face(Swept(from, to, depth_), seen_from_below ? side_ : along.y() > 0 ? front_ : top_, false);
    painter_.setPen(QPen(outline_, 0));
    painter_.drawLine(from, to);
    painter_.drawLine(from + depth_, to + depth_);
  }

 private:
  void Face(const QPolygonF& face, const QColor& colour, bool outlined) {
    // A pen in the face's colour closes the gaps between neighbours.
    painter_.setPen(QPen(outlined ? outline_ : colour, 0));
    painter_.setBrush(colour);
    painter_.drawPolygon(face);
  }

  QPainter& painter_;
  QPointF depth_;
  QColor front_;
  QColor top_ = front_.lighter(130);
  QColor side_ = front_.darker(150);
  QColor outline_ = front_.darker(210);
};

QRect WithDepth(const QRect& front, const ChartScene& scene) {
  const QPoint depth = scene.depth.toPoint();
  return front.adjusted(-1, depth.y() - 1, depth.x() + 1, 1);
}

QPointF Between(QPointF a, QPointF b, double x) {
  return {x, a.y() + (b.y() - a.y()) * (x - a.x()) / (b.x() - a.x())};
}

}  // namespace

void ChartWall::draw(QCPPainter* painter) {
  if (scene_.style.shadow) DrawBackdrop(*painter);
  DrawWalls(*painter);
  scene_.points.values.empty() ? DrawHint(*painter) : DrawGrid(*painter);
}

void ChartWall::DrawBackdrop(QCPPainter& painter) const {
  constexpr int kShadowOffset = 7;
  const QRect backdrop = rect_->outerRect();
  painter.fillRect(backdrop.translated(kShadowOffset, kShadowOffset), scene_.colours.shadow);
  painter.setPen(QPen(scene_.colours.border, 0));
  painter.setBrush(scene_.colours.ground);
  painter.drawRect(backdrop);
}

void ChartWall::DrawWalls(QCPPainter& painter) const {
  const QRectF front(rect_->rect());
  const Palette& colours = scene_.WallColours();
  const QBrush wall = scene_.style.white_wall ? QBrush(Qt::white) : QBrush(Qt::NoBrush);
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

void PortfolioLine::SetPoints() {
  QVector<QCPGraphData> points;
  points.reserve(static_cast<qsizetype>(scene_.points.values.size()));
  for (const double value : scene_.points.values) {
    points.append({static_cast<double>(points.size()), value});
  }
  data()->set(points, true);
  // A single point has no line, but is still visible.
  setScatterStyle(points.size() == 1 ? QCPScatterStyle(QCPScatterStyle::ssDisc, 7)
                                     : QCPScatterStyle());
}

void PortfolioLine::ApplyStyle() {
  constexpr double kWidth = 2;
  const bool area = scene_.style.type == ChartType::k2DArea;
  setVisible(scene_.style.IsLine());
  setBrush(area ? QBrush(scene_.style.series) : QBrush(Qt::NoBrush));
  setPen(area ? QPen(scene_.style.series.darker(), 0)
              : QPen(scene_.style.series, kWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
}

QRect PortfolioLine::clipRect() const { return WithDepth(QCPGraph::clipRect(), scene_); }

// The visible points, cut off at both ends of the axis: to the right of it a ribbon would show.
QVector<QPointF> PortfolioLine::FrontEdge() const {
  QVector<QPointF> line;
  getLines(&line, QCPDataRange(0, dataCount()));
  if (line.size() < 2) return line;
  const QRectF front = keyAxis()->axisRect()->rect();
  const qsizetype last = line.size() - 1;
  if (line[0].x() < front.left() && line[1].x() > front.left()) {
    line[0] = Between(line[0], line[1], front.left());
  }
  if (line[last].x() > front.right() && line[last - 1].x() < front.right()) {
    line[last] = Between(line[last - 1], line[last], front.right());
  }
  return line;
}

void PortfolioLine::draw(QCPPainter* painter) {
  if (scene_.depth.isNull() || dataCount() == 1) return QCPGraph::draw(painter);
  const QVector<QPointF> line = FrontEdge();
  SolidPainter solid(*painter, scene_.depth, scene_.style.series);
  for (qsizetype i = 1; i < line.size(); ++i) solid.Ribbon(line[i - 1], line[i]);
}

// In pieces: the painter's time for a wide line grows with the square of its length, and a long
// ledger's line goes up and down thousands of times.
void PortfolioLine::drawLinePlot(QCPPainter* painter, const QVector<QPointF>& lines) const {
  constexpr qsizetype kPiece = 3;
  constexpr qsizetype kLong = 500;
  const bool whole = painter->modes().testFlag(QCPPainter::pmVectorized) || lines.size() < kLong;
  const qsizetype piece = whole ? lines.size() : kPiece;
  applyDefaultAntialiasingHint(painter);
  for (qsizetype first = 0; first + 1 < lines.size(); first += piece) {
    painter->drawPolyline(QPolygonF(lines.mid(first, piece + 1)));
  }
}

void PortfolioBars::Fill() {
  constexpr double kBarShare = 0.7;
  constexpr double kLeastGap = 2;  // pixels; narrower gaps would only blur
  setVisible(!scene_.style.IsLine());
  setAntialiased(scene_.style.HasDepth());
  setAntialiasedFill(scene_.style.HasDepth());
  setPen(Qt::NoPen);
  setBrush(scene_.style.series);
  const QCPRange range = keyAxis()->range();
  const int pixels = std::max(1, keyAxis()->axisRect()->width());
  const int points = std::max(1, static_cast<int>(std::ceil(range.size() / pixels)));
  QVector<QCPBarsData> bars;
  for (const ThinnedBar& bar :
       ThinnedBars(scene_.points.values, {range.lower, range.upper}, points)) {
    bars.append({bar.place, bar.value});
  }
  data()->set(bars, true);
  const double gap = points * pixels / range.size() * (1 - kBarShare);
  const bool closed = scene_.style.type == ChartType::k3DStep || gap < kLeastGap;
  setWidth(points * (closed ? 1 : kBarShare));
}

QRect PortfolioBars::clipRect() const { return WithDepth(QCPBars::clipRect(), scene_); }

void PortfolioBars::draw(QCPPainter* painter) {
  if (scene_.depth.isNull()) return QCPBars::draw(painter);
  const QRectF front = keyAxis()->axisRect()->rect();
  SolidPainter solid(*painter, scene_.depth, scene_.style.series);
  for (const QCPBarsData& bar : *data()) {
    const QRectF box = getBarRect(bar.key, bar.value).intersected(front);
    if (box.width() > 0) solid.Box(box);
  }
}

}  // namespace velumar
