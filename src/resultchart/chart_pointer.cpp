#include "resultchart/chart_pointer.h"

#include <algorithm>
#include <cmath>

#include "resultchart/chart_tickers.h"

namespace velumar {

ChartPointer::ChartPointer(QCPAxisRect* rect, const QString& layer, const ChartScene& scene)
    : QCPLayerable(rect->parentPlot(), layer), rect_(rect), scene_(scene) {}

void ChartPointer::applyDefaultAntialiasingHint(QCPPainter* painter) const {
  painter->setAntialiasing(false);
}

void ChartPointer::Follow(std::optional<QPointF> pixel) {
  point_.reset();
  const std::size_t count = scene_.points.values.size();
  if (!pixel || count == 0 || !rect_->rect().contains(pixel->toPoint())) return;
  const double place = std::round(rect_->axis(QCPAxis::atBottom)->pixelToCoord(pixel->x()));
  point_ = static_cast<std::size_t>(std::clamp(place, 0.0, static_cast<double>(count - 1)));
}

QString ChartPointer::Text() const {
  if (!point_) return {};
  constexpr int kDecimals = 2;
  return QString::fromStdString(scene_.points.labels[*point_]) + QStringLiteral("   ") +
         MoneyText(scene_.points.values[*point_], kDecimals);
}

QPointF ChartPointer::Centre() const {
  return {rect_->axis(QCPAxis::atBottom)->coordToPixel(static_cast<double>(*point_)),
          rect_->axis(QCPAxis::atLeft)->coordToPixel(scene_.points.values[*point_])};
}

void ChartPointer::draw(QCPPainter* painter) {
  if (!point_) return;
  constexpr int kPadding = 5;
  constexpr int kDistance = 10;
  const QRectF front(rect_->rect());
  const QPointF centre = Centre();
  painter->setPen(
      QPen(scene_.white_wall ? ChartColours::Light().text : scene_.colours.text, 0, Qt::DashLine));
  painter->drawLine(QPointF(centre.x(), front.top()), QPointF(centre.x(), front.bottom()));
  painter->drawLine(QPointF(front.left(), centre.y()), QPointF(front.right(), centre.y()));

  const QString text = Text();
  painter->setFont(mParentPlot->font());
  QRectF box = QFontMetricsF(mParentPlot->font()).boundingRect(text);
  box.adjust(-kPadding, -kPadding, kPadding, kPadding);
  box.moveBottomLeft(centre + QPointF(kDistance, -kDistance));
  if (box.right() > front.right()) box.moveRight(centre.x() - kDistance);
  if (box.top() < front.top()) box.moveTop(centre.y() + kDistance);
  if (box.left() < front.left()) box.moveLeft(front.left());
  painter->setPen(QPen(scene_.colours.frame, 0));
  painter->setBrush(scene_.colours.hint);
  painter->drawRect(box);
  painter->setPen(scene_.colours.text);
  painter->drawText(box, Qt::AlignCenter, text);
}

}  // namespace velumar
