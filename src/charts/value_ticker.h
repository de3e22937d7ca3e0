#pragma once

#include <qcustomplot.h>

#include <functional>

namespace velumar {

// The smallest of 1, 2, 5, 10, 20, 50 ... times any power of ten that is not below `least`.
double RoundStep(double least);

// "1,234.50"
QString GroupedText(double value, int decimals);
// The same with as many decimals as the distance between two labels needs.
QString StepLabel(double value, double step);

// Round values on a vertical axis: multiples of 1, 2 or 5 times a power of ten. On a logarithmic
// axis over a factor of 4 or more, the same few values of each decade. The ticker must not outlive
// the axis.
class ValueTicker : public QCPAxisTicker {
 public:
  using Label = std::function<QString(double value, double step)>;

  // One value for at least `pixels`. `step` of a label is the distance of the values.
  ValueTicker(const QCPAxis& axis, int pixels, Label label)
      : axis_(axis), pixels_(pixels), label_(std::move(label)) {}
  // Round values count from `origin` in units of `unit`, percent of a price for example.
  void SetUnit(double origin, double unit);

 protected:
  double getTickStep(const QCPRange& range) override;
  QVector<double> createTickVector(double step, const QCPRange& range) override;
  QString getTickLabel(double tick, const QLocale&, QChar, int) override {
    return label_(tick, step_);
  }

 private:
  const QCPAxis& axis_;
  int pixels_;
  Label label_;
  double unit_ = 1;
  double step_ = 1;
};

}  // namespace velumar
