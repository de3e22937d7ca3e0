#include "charthost/view/chart_overlay.h"

#include <cmath>

#include "charthost/date_text.h"
#include "charthost/price_text.h"
#include "charthost/view/axis_tickers.h"
#include "charthost/view/qt_text.h"

namespace velumar {
namespace {

constexpr int kTagPadding = 5;

// A tag on the value axis, its left edge at the axis.
void DrawAxisTag(QCPPainter* painter, const QCPAxisRect* rect, double y, const QString& text,
                 const QColor& fill, const QColor& text_color) {
  const QFontMetrics metrics(painter->font());
  const int height = metrics.height() + 2;
  const int room = rect->parentPlot()->width() - rect->right() - 2;
  const int width = std::max(room, metrics.horizontalAdvance(text) + 2 * kTagPadding);
  const QRect tag(rect->right() + 1, qRound(y) - height / 2, width, height);
  painter->fillRect(tag, fill);
  painter->setPen(text_color);
  painter->drawText(tag.adjusted(kTagPadding, 0, 0, 0), Qt::AlignLeft | Qt::AlignVCenter, text);
}

}  // namespace

void StrongGridLayer::draw(QCPPainter* painter) {
  const QCPAxis* const axis = rect_->axis(QCPAxis::atBottom);
  const auto ticker = axis->ticker().dynamicCast<BarDateTicker>();
  if (!ticker) return;
  painter->setPen(QPen(Colors().strong_grid, 0));
  for (const double place : ticker->StrongPlaces()) {
    const int x = static_cast<int>(std::lround(X(place)));
    painter->drawLine(QLine(x, rect_->top(), x, rect_->bottom()));
  }
}

void LastPriceLayer::draw(QCPPainter* painter) {
  const BarSeries& series = scene_.model.Series();
  if (series.size() == 0) return;
  const double close = series.closes.back();
  const QCPAxis* const axis = rect_->axis(QCPAxis::atRight);
  if (!axis->range().contains(close)) return;
  const bool rising = series.size() < 2 || close >= series.closes[series.size() - 2];
  const QColor color = rising ? scene_.colors->up : scene_.colors->down;
  const double y = axis->coordToPixel(close);
  painter->setPen(QPen(color, 0, Qt::DotLine));
  painter->drawLine(QPointF(rect_->left(), std::round(y)), QPointF(rect_->right(), std::round(y)));
  painter->setFont(axis->tickLabelFont());
  DrawAxisTag(painter, rect_, y, ToQt(PriceText(close, series.decimals)), color,
              scene_.colors->background);
}

QRect PointerLayer::PlotArea() const {
  return volumes_->visible() ? prices_->rect().united(volumes_->rect()) : prices_->rect();
}

std::optional<int> PointerLayer::Bar() const {
  if (!pointer_ || !PlotArea().contains(pointer_->toPoint())) return std::nullopt;
  const double place = prices_->axis(QCPAxis::atBottom)->pixelToCoord(pointer_->x());
  const int bar = static_cast<int>(std::lround(place));
  if (bar < 0 || bar >= scene_.model.Series().size()) return std::nullopt;
  return bar;
}

void PointerLayer::draw(QCPPainter* painter) {
  if (marked_) return DrawMarked(painter);
  const std::optional<int> bar = Bar();
  if (!bar) return;
  painter->setFont(prices_->axis(QCPAxis::atRight)->tickLabelFont());
  DrawCrosshair(painter, *bar);
  DrawValueTag(painter);
  DrawDateTag(painter, *bar);
}

void PointerLayer::DrawMarked(QCPPainter* painter) {
  const QRect area = PlotArea();
  QColor fill = scene_.colors->line;
  fill.setAlpha(48);
  const double left = std::min(marked_->first, marked_->second);
  const double right = std::max(marked_->first, marked_->second);
  const QRectF marked(left, area.top(), right - left, area.height());
  painter->fillRect(marked & QRectF(area), fill);
}

void PointerLayer::DrawCrosshair(QCPPainter* painter, int bar) {
  const QRect area = PlotArea();
  const int x = static_cast<int>(std::lround(prices_->axis(QCPAxis::atBottom)->coordToPixel(bar)));
  const int y = static_cast<int>(std::lround(pointer_->y()));
  painter->setPen(QPen(scene_.colors->crosshair, 0, Qt::DashLine));
  painter->drawLine(QLine(x, area.top(), x, area.bottom()));
  painter->drawLine(QLine(area.left(), y, area.right(), y));
}

void PointerLayer::DrawValueTag(QCPPainter* painter) {
  const QPoint at = pointer_->toPoint();
  const bool in_prices = prices_->rect().contains(at);
  if (!in_prices && !volumes_->rect().contains(at)) return;
  const QCPAxisRect* const rect = in_prices ? prices_ : volumes_;
  const double value = rect->axis(QCPAxis::atRight)->pixelToCoord(pointer_->y());
  const std::string text = in_prices ? PriceText(value, scene_.model.Series().decimals)
                                     : ShortVolumeText(std::max(0.0, value));
  DrawAxisTag(painter, rect, pointer_->y(), ToQt(text), scene_.colors->tag,
              scene_.colors->tag_text);
}

void PointerLayer::DrawDateTag(QCPPainter* painter, int bar) {
  const BarSeries& series = scene_.model.Series();
  std::string text = LongDayText(series.dates[bar]);
  if (series.has_times) text += "  " + TimeText(series.times[bar]);
  const QRect area = PlotArea();
  const QFontMetrics metrics(painter->font());
  const int width = metrics.horizontalAdvance(ToQt(text)) + 2 * kTagPadding;
  const int middle =
      static_cast<int>(std::lround(prices_->axis(QCPAxis::atBottom)->coordToPixel(bar)));
  const int left =
      std::clamp(middle - width / 2, area.left(), std::max(area.left(), area.right() - width));
  const QRect tag(left, area.bottom() + 2, width, metrics.height() + 2);
  painter->fillRect(tag, scene_.colors->tag);
  painter->setPen(scene_.colors->tag_text);
  painter->drawText(tag, Qt::AlignCenter, ToQt(text));
}

}  // namespace velumar
