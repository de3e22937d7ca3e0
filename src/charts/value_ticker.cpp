#include "charts/value_ticker.h"

#include <algorithm>
#include <cmath>

namespace velumar {
namespace {

QVector<double> DecadeTicks(const QCPRange& range, const QVector<double>& factors) {
  QVector<double> ticks;
  const auto last = static_cast<int>(std::floor(std::log10(range.upper)));
  for (auto decade = static_cast<int>(std::floor(std::log10(range.lower))); decade <= last;
       ++decade) {
    for (const double factor : factors) {
      const double tick = factor * std::pow(10, decade);
      if (range.contains(tick)) ticks.append(tick);
    }
  }
  return ticks;
}

}  // namespace

double RoundStep(double least) {
  const double power = std::pow(10, std::floor(std::log10(least)));
  for (const double factor : {1.0, 2.0, 5.0}) {
    if (factor * power >= least * (1 - 1e-9)) return factor * power;
  }
  return 10 * power;
}

QString GroupedText(double value, int decimals) {
  return QLocale(QLocale::English, QLocale::UnitedStates).toString(value, 'f', decimals);
}

QString StepLabel(double value, double step) {
  return GroupedText(value, std::max(0, static_cast<int>(-std::floor(std::log10(step) + 1e-9))));
}

void ValueTicker::SetUnit(double origin, double unit) {
  setTickOrigin(origin);
  unit_ = unit;
}

double ValueTicker::getTickStep(const QCPRange& range) {
  // The step is rounded up: in a low pane with few labels none may be in the range, so they stand
  // closer there, as long as half a line is free between two.
  constexpr int kEnough = 4;
  const int height = axis_.axisRect()->height();
  const int fit = height * 2 / (3 * QFontMetrics(axis_.tickLabelFont()).height());
  const int wanted = std::max({1, height / pixels_, std::min(kEnough, fit)});
  setTickCount(wanted);
  step_ = RoundStep(range.size() / wanted / unit_) * unit_;
  return step_;
}

QVector<double> ValueTicker::createTickVector(double step, const QCPRange& range) {
  constexpr double kLeastFactor = 4;
  const bool logarithmic = axis_.scaleType() == QCPAxis::stLogarithmic && range.lower > 0 &&
                           range.upper / range.lower >= kLeastFactor;
  if (!logarithmic) return QCPAxisTicker::createTickVector(step, range);
  for (const QVector<double>& factors :
       {QVector<double>{1, 1.5, 2, 3, 4, 5, 7}, QVector<double>{1, 2, 5}}) {
    QVector<double> ticks = DecadeTicks(range, factors);
    if (ticks.size() <= tickCount()) return ticks;
  }
  return DecadeTicks(range, {1});
}

}  // namespace velumar
