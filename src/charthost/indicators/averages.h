#pragma once

#include "charthost/indicators/indicator.h"
#include "charthost/indicators/window.h"

namespace velumar {

// The averages of a series of numbers. Each returns kNoValue until it has `period` of them; the
// period is at least 1.

// The mean of the last `period` values.
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

// A share of 2 / (period + 1): Steven B. Achelis, "Technical Analysis from A to Z", 2nd edition,
// 2000, page 209, but started with the mean instead of the first value.
inline SmoothedAverage ExponentialAverage(int period) { return {period, 2.0 / (period + 1)}; }

// A share of 1 / period: J. Welles Wilder, "New Concepts in Technical Trading Systems", 1978.
inline SmoothedAverage WilderAverage(int period) { return {period, 1.0 / period}; }

// The indicators: averages of the closes. Period 1 to 999.

// Simple: Achelis, page 207.
class SimpleAverageOfCloses {
 public:
  explicit SimpleAverageOfCloses(int period) : average_(period) {}
  IndicatorLines operator()(const Bar& bar) { return Lines(average_.Add(bar.close)); }

 private:
  SimpleAverage average_;
};

// Exponential.
class ExponentialAverageOfCloses {
 public:
  explicit ExponentialAverageOfCloses(int period) : average_(ExponentialAverage(period)) {}
  IndicatorLines operator()(const Bar& bar) { return Lines(average_.Add(bar.close)); }

 private:
  SmoothedAverage average_;
};

// Weighted: the newest close counts `period` times, the oldest once. Achelis, page 213.
class WeightedAverageOfCloses {
 public:
  explicit WeightedAverageOfCloses(int period) : window_(period) {}
  IndicatorLines operator()(const Bar& bar) {
    window_.Add(bar.close);
    return Lines(window_.Full() ? window_.WeightedMean() : kNoValue);
  }

 private:
  Window window_;
};

}  // namespace velumar
