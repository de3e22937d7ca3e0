#pragma once

#include <qcustomplot.h>

#include "resultchart/chart_scene.h"

namespace velumar {

// Marks of the date axis: as many as have room beside each other, none cut by the picture's edge.
class DateTicker : public QCPAxisTicker {
 public:
  DateTicker(const QCPAxis& axis, const ChartScene& scene) : axis_(axis), scene_(scene) {}

  void generate(const QCPRange& range, const QLocale& locale, QChar format, int precision,
                QVector<double>& ticks, QVector<double>* sub_ticks,
                QVector<QString>* labels) override;
  // Where the last call put them.
  const QVector<double>& Marks() const { return marks_; }

 private:
  bool FitsInPicture(double place, int label_width) const;

  const QCPAxis& axis_;
  const ChartScene& scene_;
  QVector<double> marks_;
};

// Marks of the value axis, grouped by thousands and with the decimals that their distance needs.
class MoneyTicker : public QCPAxisTicker {
 public:
  MoneyTicker(const QCPAxis& axis, const ChartScene& scene) : axis_(axis), scene_(scene) {}

  void generate(const QCPRange& range, const QLocale& locale, QChar format, int precision,
                QVector<double>& ticks, QVector<double>* sub_ticks,
                QVector<QString>* labels) override;
  const QVector<double>& Marks() const { return marks_; }

 private:
  const QCPAxis& axis_;
  const ChartScene& scene_;
  QVector<double> marks_;
};

QString MoneyText(double value, int decimals);

}  // namespace velumar
