#pragma once

#include "charthost/indicators/indicator.h"
#include "charthost/indicators/window.h"

namespace velumar {

// The averages of a series of numbers. Each returns kNoValue until it has `period` of them; the
// period is at least 1.

// The mean of the last `period` values: Steven B. Achelis, "Technical Analysis from A to Z", 2nd
// edition, 2000, page 207.
class SimpleAverage {
 public:
  explicit SimpleAverage(int period) : window_(period) {}
  double Add(double value);

 private:
  Window window_;
  double sum_ = 0;
  int until_exact_ = 0;
};

// A value that moves by a share of its distance to each new value. It starts at the mean of the
// first `period` values.
class SmoothedAverage {
 public:
  SmoothedAverage(int period, double share) : share_(share), start_(period) {}
  double Add(double value);

 private:
  double share_;
  SimpleAverage start_;
  double average_ = kNoValue;
};

// A share of 2 / (period + 1): Achelis, page 209, but started with the mean instead of the first
// value.
inline SmoothedAverage ExponentialAverage(int period) { return {period, 2.0 / (period + 1)}; }

// A share of 1 / period: J. Welles Wilder, "New Concepts in Technical Trading Systems", 1978.
inline SmoothedAverage WilderAverage(int period) { return {period, 1.0 / period}; }

// The newest value counts `period` times, the oldest once: Achelis, page 213.
class WeightedAverage {
 public:
  explicit WeightedAverage(int period) : window_(period) {}
  double Add(double value);

 private:
  Window window_;
};

// The indicator that averages one value of the bars, the close or the volume for example. Periods 1
// to 999, usually 20.
template <typename Average>
Indicator AverageOf(float Bar::*value, Average average) {
  return [value, average](const Bar& bar) mutable { return Lines(average.Add(bar.*value)); };
}

}  // namespace velumar
