#include "resultchart/solid_series.h"

#include <cmath>

#include "resultchart/thinning.h"

namespace velumar {
namespace {

// Draws solids from the front of a chart to its back, which is `depth` pixels up and to the right.
// Tops and right sides are visible, and solids cover those to the left: draw from left to right.
class SolidPainter {
 public:
  SolidPainter(QPainter& painter, QPointF depth, const QColor& colour)
      : painter_(painter),
        depth_(depth),
        front_(colour),
        top_(colour.lighter(130)),
        side_(colour.darker(150)),
        outline_(colour.darker(210)) {}

  void Box(const QRectF& front) {
    constexpr double kLeastOutlined = 5;  // pixels
    const bool outlined = front.width() >= kLeastOutlined;
    Face(Swept(front.topRight(), front.bottomRight()), side_, outlined);
    Face(Swept(front.topLeft(), front.topRight()), top_, outlined);
    Face(front, front_, outlined);
  }

  // A segment of a ribbon, between two points of its front edge.
  void Ribbon(QPointF from, QPointF to) {
    // A segment that rises more steeply than the depth shows its lower side.
    const QPointF along = to - from;
    const bool seen_from_below = along.x() * depth_.y() - along.y() * depth_.x() > 0;
    Face(Swept(from, to), seen_from_below ? side_ : along.y() > 0 ? front_ : top_, false);
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

  // The face between an edge of the front and the same edge at the back.
  QPolygonF Swept(QPointF from, QPointF to) const {
    return QPolygonF({from, to, to + depth_, from + depth_});
  }

  QPainter& painter_;
  QPointF depth_;
  QColor front_;
  QColor top_;
  QColor side_;
  QColor outline_;
};

QRect WithDepth(const QRect& front, const ChartScene& scene) {
  const QPoint depth = scene.depth.toPoint();
  return front.adjusted(-1, depth.y() - 1, depth.x() + 1, 1);
}

QPointF Between(QPointF a, QPointF b, double x) {
  return {x, a.y() + (b.y() - a.y()) * (x - a.x()) / (b.x() - a.x())};
}

}  // namespace

PortfolioLine::PortfolioLine(QCPAxis* places, QCPAxis* values, const ChartScene& scene)
    : QCPGraph(places, values), scene_(scene) {
  setSelectable(QCP::stNone);
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
  const bool area = scene_.type == ChartType::k2DArea;
  setVisible(IsLine(scene_.type));
  setBrush(area ? QBrush(scene_.series) : QBrush(Qt::NoBrush));
  setPen(area ? QPen(scene_.series.darker(), 0)
              : QPen(scene_.series, kWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
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
  SolidPainter solid(*painter, scene_.depth, scene_.series);
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

PortfolioBars::PortfolioBars(QCPAxis* places, QCPAxis* values, const ChartScene& scene)
    : QCPBars(places, values), scene_(scene) {
  setSelectable(QCP::stNone);
  setPen(Qt::NoPen);
}

void PortfolioBars::Fill() {
  constexpr double kBarShare = 0.7;
  constexpr double kLeastGap = 2;  // pixels; narrower gaps would only blur
  setVisible(!IsLine(scene_.type));
  setAntialiased(HasDepth(scene_.type));
  setAntialiasedFill(HasDepth(scene_.type));
  setBrush(scene_.series);
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
  const bool closed = scene_.type == ChartType::k3DStep || gap < kLeastGap;
  setWidth(points * (closed ? 1 : kBarShare));
}

QRect PortfolioBars::clipRect() const { return WithDepth(QCPBars::clipRect(), scene_); }

void PortfolioBars::draw(QCPPainter* painter) {
  if (scene_.depth.isNull()) return QCPBars::draw(painter);
  const QRectF front = keyAxis()->axisRect()->rect();
  SolidPainter solid(*painter, scene_.depth, scene_.series);
  for (const QCPBarsData& bar : *data()) {
    const QRectF box = getBarRect(bar.key, bar.value).intersected(front);
    if (box.width() > 0) solid.Box(box);
  }
}

}  // namespace velumar
