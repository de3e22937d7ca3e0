#include "charthost/indicators/averages.h"

#include <cmath>

namespace velumar {

// The running sum is computed anew once in a period: after a far higher value it would have lost
// the digits of the lower ones for good.
double SimpleAverage::Add(double value) {
  if (window_.Full()) sum_ -= window_.Oldest();
  sum_ += value;
  window_.Add(value);
  if (!window_.Full()) return kNoValue;
  if (--until_exact_ < 0) {
    sum_ = window_.Mean() * window_.Length();
    until_exact_ = window_.Length();
  }
  return sum_ / window_.Length();
}

double SmoothedAverage::Add(double value) {
  if (std::isnan(average_)) {
    average_ = start_.Add(value);
  } else {
    average_ += share_ * (value - average_);
  }
  return average_;
}

double WeightedAverage::Add(double value) {
  window_.Add(value);
  return window_.Full() ? window_.WeightedMean() : kNoValue;
}

}  // namespace velumar
