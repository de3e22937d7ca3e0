#include "charthost/view/bar_plottables.h"

#include <cmath>

#include "charthost/date_ticks.h"
#include "charts/qt_text.h"

namespace velumar {

void BarDateTicker::generate(const QCPRange& range, const QLocale&, QChar, int,
                             QVector<double>& ticks, QVector<double>* sub_ticks,
                             QVector<QString>* labels) {
  Compute(range);
  ticks = bars_;
  if (sub_ticks != nullptr) sub_ticks->clear();
  if (labels != nullptr) *labels = texts_;
}

void BarDateTicker::Compute(const QCPRange& range) {
  constexpr int kLabelDigits = 8;
  const int width = axis_.axisRect()->width();
  if (known_ && range == range_ && width == width_) return;
  known_ = true;
  range_ = range;
  width_ = width;
  bars_.clear();
  strong_.clear();
  texts_.clear();
  if (width <= 0) return;
  const ViewWindow& window = model_.Window();
  const int label_width =
      QFontMetrics(axis_.tickLabelFont()).horizontalAdvance(u'0') * kLabelDigits;
  for (const DateTick& tick :
       DateTicks(model_.Series(), {window.FirstBar(), window.LastBar(), width / range.size()},
                 label_width)) {
    bars_.append(tick.bar);
    if (tick.strong) strong_.append(tick.bar);
    texts_.append(ToQt(tick.text));
  }
}

void StrongGrid::draw(QCPPainter* painter) {
  painter->setPen(QPen(plot_.Colours().strong_grid, 0));
  for (const double bar : ticker_.StrongTicks()) {
    const double x = std::round(rect_.axis(QCPAxis::atBottom)->coordToPixel(bar));
    painter->drawLine(QLineF(x, rect_.top(), x, rect_.bottom()));
  }
}

PriceBars::PriceBars(QCPAxis* bars, QCPAxis* values, bool finished)
    : QCPFinancial(bars, values), finished_(finished) {
  setAntialiased(false);
  setSelectable(QCP::stNone);
  setTwoColored(true);
  setWidthType(wtAbsolute);
}

void PriceBars::Style(bool candles) {
  const bool pale = !finished_ && !candles;
  const QColor& up = pale ? colours_.up_volume : colours_.up;
  const QColor& down = pale ? colours_.down_volume : colours_.down;
  setPenPositive(BodyPen(up));
  setPenNegative(BodyPen(down));
  setBrushPositive(finished_ ? up : colours_.field);
  setBrushNegative(finished_ ? down : colours_.field);
}

void PriceBars::Fill(const ChartModel& model) {
  QVector<QCPFinancialData> bars;
  bars.reserve(static_cast<qsizetype>(model.Columns().size()));
  const int newest = model.Series().newest_unfinished ? model.Series().size() - 1 : -1;
  for (const BarColumn& column : model.Columns()) {
    if ((column.last_bar == newest) == finished_) continue;
    bars.append({SnappedPlace(*keyAxis(), column.place), column.open, column.high, column.low,
                 column.close});
  }
  data()->set(bars, true);
  has_opens_ = model.Series().has_opens;
  setWidth(2 * BodyReach(model));
  const bool candles = model.Options().style == velumar::ChartStyle::kCandles && has_opens_;
  setChartStyle(candles ? csCandlestick : csOhlc);
  Style(candles);
}

void PriceBars::draw(QCPPainter* painter) {
  if (has_opens_) return QCPFinancial::draw(painter);
  painter->setPen(penPositive());
  for (const QCPFinancialData& bar : *data()) {
    const QPointF close = coordsToPixels(bar.key, bar.close);
    painter->drawLine(coordsToPixels(bar.key, bar.high), coordsToPixels(bar.key, bar.low));
    painter->drawLine(close, close + QPointF(width() / 2, 0));
  }
}

QPen BodyPen(const QColor& colour) {
  return {colour, 1, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin};
}

double SnappedPlace(const QCPAxis& bars, double place) {
  return bars.pixelToCoord(std::round(bars.coordToPixel(place)));
}

int BodyReach(const ChartModel& model) {
  constexpr double kBodyShare = 0.75;
  const double width = model.PixelsPerBar() * model.BarsInColumn() * kBodyShare;
  return std::max(0, static_cast<int>((width - 1) / 2));
}

}  // namespace velumar
