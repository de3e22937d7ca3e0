#pragma once

#include <cstddef>
#include <vector>

#include "charthost/indicators/indicator.h"

namespace velumar {

// The last `length` values.
class Window {
 public:
  explicit Window(int length) : values_(static_cast<std::size_t>(length)) {}

  void Add(double value);
  bool Full() const { return full_; }
  int Length() const { return static_cast<int>(values_.size()); }
  // The functions below need a full window.
  double Oldest() const { return values_[next_]; }
  double Highest() const;
  double Lowest() const;
  double Mean() const;
  // The standard deviation of the population: the squares are divided by the length.
  double Deviation() const;
  // The newest value counts `length` times, the oldest once.
  double WeightedMean() const;

 private:
  std::vector<double> values_;  // a ring
  std::size_t next_ = 0;
  bool full_ = false;
};

}  // namespace velumar
