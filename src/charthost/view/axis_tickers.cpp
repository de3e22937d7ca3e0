#include "charthost/view/axis_tickers.h"

#include "charthost/date_ticks.h"
#include "charthost/price_text.h"
#include "charthost/value_ticks.h"
#include "charthost/view/qt_text.h"

namespace velumar {

void BarDateTicker::generate(const QCPRange& range, const QLocale&, QChar, int,
                             QVector<double>& ticks, QVector<double>* sub_ticks,
                             QVector<QString>* labels) {
  ticks.clear();
  strong_.clear();
  if (sub_ticks != nullptr) sub_ticks->clear();
  if (labels != nullptr) labels->clear();
  const int width = axis_->axisRect()->width();
  if (width <= 0) return;
  const ViewWindow& window = model_.Window();
  const AxisStretch stretch = {window.FirstBar(), window.LastBar(), width / range.size()};
  const int label_width = QFontMetrics(axis_->tickLabelFont()).horizontalAdvance(u'0') * 8;
  for (const DateTick& tick : DateTicks(model_.Series(), stretch, label_width)) {
    ticks.append(tick.bar);
    if (tick.strong) strong_.append(tick.bar);
    if (labels != nullptr) labels->append(ToQt(tick.text));
  }
}

void ValueTicker::generate(const QCPRange& range, const QLocale&, QChar, int,
                           QVector<double>& ticks, QVector<double>* sub_ticks,
                           QVector<QString>* labels) {
  if (sub_ticks != nullptr) sub_ticks->clear();
  if (labels != nullptr) labels->clear();
  const int pixels = kind_ == ValueKind::kPrice ? 52 : 34;
  const int wanted = axis_->axisRect()->height() / pixels;
  const bool logarithmic = axis_->scaleType() == QCPAxis::stLogarithmic;
  const std::vector<double> values = ValueTicks(range.lower, range.upper, wanted, logarithmic);
  ticks = QVector<double>(values.begin(), values.end());
  if (labels == nullptr) return;
  for (const double value : values) labels->append(Label(value));
}

QString ValueTicker::Label(double value) const {
  return ToQt(kind_ == ValueKind::kPrice ? PriceText(value, model_.Series().decimals)
                                         : ShortVolumeText(value));
}

}  // namespace velumar
