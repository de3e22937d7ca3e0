#pragma once

#include <qcustomplot.h>

#include "charthost/chart_model.h"

namespace velumar {

// Marks of the date axis. Keeps the strong ones, which get stronger lines.
class BarDateTicker : public QCPAxisTicker {
 public:
  BarDateTicker(const QCPAxis* axis, const ChartModel& model) : axis_(axis), model_(model) {}

  void generate(const QCPRange& range, const QLocale& locale, QChar format, int precision,
                QVector<double>& ticks, QVector<double>* sub_ticks,
                QVector<QString>* labels) override;
  const QVector<double>& StrongPlaces() const { return strong_; }

 private:
  const QCPAxis* axis_;
  const ChartModel& model_;
  QVector<double> strong_;
};

enum class ValueKind { kPrice, kVolume };

// Marks of the price and the volume axis.
class ValueTicker : public QCPAxisTicker {
 public:
  ValueTicker(const QCPAxis* axis, const ChartModel& model, ValueKind kind)
      : axis_(axis), model_(model), kind_(kind) {}

  void generate(const QCPRange& range, const QLocale& locale, QChar format, int precision,
                QVector<double>& ticks, QVector<double>* sub_ticks,
                QVector<QString>* labels) override;

 private:
  QString Label(double value) const;

  const QCPAxis* axis_;
  const ChartModel& model_;
  ValueKind kind_;
};

}  // namespace velumar
