#include "resultchart/chart_tickers.h"

#include <algorithm>
#include <cmath>

namespace velumar {

namespace {

// The smallest of 1, 2, 5, 10, 20, 50 … that is not below `least`.
double RoundStep(double least) {
  const double power = std::pow(10, std::floor(std::log10(least)));
  for (const double factor : {1.0, 2.0, 5.0}) {
    if (factor * power >= least * (1 - 1e-9)) return factor * power;
  }
  return 10 * power;
}

}  // namespace

bool DateTicker::FitsInPicture(double place, int label_width) const {
  const double x = axis_.coordToPixel(place);
  const QRect picture = axis_.parentPlot()->viewport();
  return x - label_width / 2.0 >= picture.left() && x + label_width / 2.0 <= picture.right();
}

void DateTicker::generate(const QCPRange& range, const QLocale&, QChar, int, QVector<double>& ticks,
                          QVector<double>* sub_ticks, QVector<QString>* labels) {
  ticks.clear();
  if (sub_ticks != nullptr) sub_ticks->clear();
  if (labels != nullptr) labels->clear();
  marks_.clear();
  const int width = axis_.axisRect()->width();
  const auto count = static_cast<double>(scene_.points.labels.size());
  if (width <= 0 || count == 0) return;
  constexpr int kGap = 18;
  // The widest letters bound a label of that many.
  const auto letters = static_cast<qsizetype>(scene_.points.labels.front().size());
  const int label_width =
      QFontMetrics(axis_.tickLabelFont()).horizontalAdvance(QString(letters, u'0'));
  const double step = std::max(1.0, RoundStep((label_width + kGap) * range.size() / width));
  const double last = std::min(std::floor(range.upper), count - 1);
  for (double at = std::max(0.0, std::ceil(range.lower / step) * step); at <= last; at += step) {
    if (!FitsInPicture(at, label_width)) continue;
    ticks.append(at);
    if (labels != nullptr) {
      labels->append(QString::fromStdString(scene_.points.labels[static_cast<std::size_t>(at)]));
    }
  }
  marks_ = ticks;
}

void MoneyTicker::generate(const QCPRange& range, const QLocale&, QChar, int,
                           QVector<double>& ticks, QVector<double>* sub_ticks,
                           QVector<QString>* labels) {
  ticks.clear();
  if (sub_ticks != nullptr) sub_ticks->clear();
  if (labels != nullptr) labels->clear();
  marks_.clear();
  const int height = axis_.axisRect()->height();
  if (height <= 0 || scene_.points.values.empty()) return;
  constexpr double kPixels = 46;
  const double step = RoundStep(std::max(range.size() * kPixels / height, 1e-6));
  const int decimals = std::max(0, static_cast<int>(-std::floor(std::log10(step) + 1e-9)));
  const auto first = static_cast<qint64>(std::ceil(range.lower / step - 1e-9));
  for (qint64 i = first; static_cast<double>(i) * step <= range.upper + step * 1e-9; ++i) {
    ticks.append(static_cast<double>(i) * step);
    if (labels != nullptr) labels->append(MoneyText(ticks.last(), decimals));
  }
  marks_ = ticks;
}

QString MoneyText(double value, int decimals) {
  return QLocale(QLocale::English, QLocale::UnitedStates).toString(value, 'f', decimals);
}

}  // namespace velumar
