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

PriceBars::PriceBars(QCPAxis* bars, QCPAxis* values, Part part)
    : QCPFinancial(bars, values), part_(part) {
  setAntialiased(false);
  setSelectable(QCP::stNone);
  setTwoColored(true);
  setWidthType(wtAbsolute);
}

void PriceBars::Style(const ChartModel& model) {
  const auto style = model.Options().style;
  const bool candles = style != velumar::ChartStyle::kBars && has_opens_;
  const bool hollow = style == velumar::ChartStyle::kHollow && has_opens_;
  const bool unfinished = part_ == Part::kUnfinished;
  const bool pale = unfinished && (!candles || hollow);
  QColor up = pale ? colours_.up_volume : colours_.up;
  QColor down = pale ? colours_.down_volume : colours_.down;
  if (hollow && !unfinished) (part_ == Part::kUp ? down : up) = part_ == Part::kUp ? up : down;
  setChartStyle(candles ? csCandlestick : csOhlc);
  setPenPositive(BodyPen(up));
  setPenNegative(BodyPen(down));
  setBrushPositive(unfinished || hollow ? colours_.field : up);
  setBrushNegative(unfinished && !hollow ? colours_.field : down);
}

void PriceBars::Fill(const ChartModel& model) {
  QVector<QCPFinancialData> bars;
  bars.reserve(static_cast<qsizetype>(model.Columns().size()));
  const BarSeries& series = model.Series();
  const int newest = series.newest_unfinished ? series.size() - 1 : -1;
  const bool hollow = model.Options().style == velumar::ChartStyle::kHollow;
  const int before = model.Columns().empty() ? -1 : model.Window().FirstBar() - 1;
  float previous = before >= 0 ? series.closes[before] : 0;
  for (const BarColumn& column : model.Columns()) {
    const bool fallen = hollow && column.close < previous;
    previous = column.close;
    const Part part = column.last_bar == newest ? Part::kUnfinished
                      : fallen                  ? Part::kDown
                                                : Part::kUp;
    if (part != part_) continue;
    bars.append({SnappedPlace(*keyAxis(), column.place), column.open, column.high, column.low,
                 column.close});
  }
  data()->set(bars, true);
  has_opens_ = series.has_opens;
  setWidth(2 * BodyReach(model));
  Style(model);
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
