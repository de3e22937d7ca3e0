#include "resultchart/portfolio_series.h"

#include <algorithm>

#include "resultchart/solid_painter.h"

namespace velumar {

namespace {

constexpr double kLineWidth = 2;
constexpr double kBarShare = 0.7;
constexpr double kLeastBarGap = 2;  // pixels; narrower ones aren't told apart anyway

}  // namespace

PortfolioSeries::PortfolioSeries(QCPAxis* places, QCPAxis* values, const ChartScene& scene)
    : QCPAbstractPlottable(places, values), scene_(scene) {
  setSelectable(QCP::stNone);
}

double PortfolioSeries::selectTest(const QPointF&, bool, QVariant*) const { return -1; }

QCPRange PortfolioSeries::getKeyRange(bool& found, QCP::SignDomain) const {
  found = !scene_.points.values.empty();
  return {-0.5, static_cast<double>(scene_.points.values.size()) - 0.5};
}

QCPRange PortfolioSeries::getValueRange(bool& found, QCP::SignDomain, const QCPRange&) const {
  found = !scene_.points.values.empty();
  const ValueSpan span = FittingValues(scene_.points.values, Span(), StandsOnBase(scene_.type));
  return {span.lower, span.upper};
}

void PortfolioSeries::drawLegendIcon(QCPPainter* painter, const QRectF& rect) const {
  painter->fillRect(rect, scene_.series);
}

QRect PortfolioSeries::clipRect() const {
  const QPoint depth = scene_.depth.toPoint();
  return QCPAbstractPlottable::clipRect().adjusted(-1, depth.y() - 1, depth.x() + 1, 1);
}

void PortfolioSeries::draw(QCPPainter* painter) {
  if (scene_.points.values.empty()) return;
  painter->setAntialiasing(true);
  switch (scene_.type) {
    case ChartType::k2DBar:
      return DrawBars(*painter);
    case ChartType::k2DLine:
      return DrawLine(*painter);
    case ChartType::k2DArea:
      return DrawArea(*painter);
    case ChartType::k3DBar:
      return DrawBoxes(*painter, kBarShare);
    case ChartType::k3DLine:
      return DrawRibbon(*painter);
    case ChartType::k3DStep:
      return DrawBoxes(*painter, 1);
  }
}

AxisSpan PortfolioSeries::Span() const {
  return {mKeyAxis->range().lower, mKeyAxis->range().upper};
}

QPointF PortfolioSeries::Pixel(double place, double value) const {
  return {mKeyAxis->coordToPixel(place), mValueAxis->coordToPixel(value)};
}

double PortfolioSeries::BaseValue() const {
  return std::clamp(0.0, mValueAxis->range().lower, mValueAxis->range().upper);
}

QPolygonF PortfolioSeries::FrontLine() const {
  QPolygonF line;
  const int columns = mKeyAxis->axisRect()->width();
  for (const LinePoint& point : ThinnedLine(scene_.points.values, Span(), columns)) {
    line.append(Pixel(point.place, point.value));
  }
  // A single point still shows.
  if (line.size() == 1) line = {line[0] - QPointF(4, 0), line[0] + QPointF(4, 0)};
  return line;
}

// In pieces: the painter's time for a wide line grows with the square of its length, and a long
// ledger's runs up and down thousands of times.
void PortfolioSeries::DrawLine(QCPPainter& painter) const {
  constexpr qsizetype kPiece = 3;
  constexpr qsizetype kLong = 500;
  const QPolygonF line = FrontLine();
  const bool vectors = painter.modes().testFlag(QCPPainter::pmVectorized);
  const qsizetype piece = vectors || line.size() < kLong ? line.size() : kPiece;
  painter.setPen(QPen(scene_.series, kLineWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.setBrush(Qt::NoBrush);
  for (qsizetype first = 0; first + 1 < line.size(); first += piece) {
    painter.drawPolyline(QPolygonF(line.mid(first, piece + 1)));
  }
}

void PortfolioSeries::DrawArea(QCPPainter& painter) const {
  QPolygonF area = FrontLine();
  const double base = mValueAxis->coordToPixel(BaseValue());
  area.prepend({area.first().x(), base});
  area.append({area.last().x(), base});
  painter.setPen(QPen(scene_.series.darker(), 0));
  painter.setBrush(scene_.series);
  painter.drawPolygon(area);
}

QRectF PortfolioSeries::Front(const Slot& slot, double share) const {
  const QPointF tip = Pixel(slot.left, slot.value);
  const QPointF foot = Pixel(slot.right, BaseValue());
  const QRectF whole = QRectF(tip, foot).normalized();
  const double gap = whole.width() * (1 - share);
  const double half = gap < kLeastBarGap ? 0 : gap / 2;
  return whole.adjusted(half, 0, -half, 0);
}

void PortfolioSeries::DrawBars(QCPPainter& painter) const {
  const int columns = mKeyAxis->axisRect()->width();
  painter.setAntialiasing(false);
  painter.setPen(Qt::NoPen);
  painter.setBrush(scene_.series);
  for (const Slot& slot : ThinnedSlots(scene_.points.values, Span(), columns, BaseValue())) {
    painter.drawRect(Front(slot, kBarShare));
  }
}

void PortfolioSeries::DrawRibbon(QCPPainter& painter) const {
  const QPolygonF line = FrontLine();
  SolidPainter solid(painter, scene_.depth, scene_.series);
  for (qsizetype i = 1; i < line.size(); ++i) solid.Ribbon(line[i - 1], line[i]);
}

void PortfolioSeries::DrawBoxes(QCPPainter& painter, double share) const {
  const int columns = mKeyAxis->axisRect()->width();
  SolidPainter solid(painter, scene_.depth, scene_.series);
  for (const Slot& slot : ThinnedSlots(scene_.points.values, Span(), columns, BaseValue())) {
    solid.Box(Front(slot, share));
  }
}

}  // namespace velumar
