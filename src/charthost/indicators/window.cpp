#include "charthost/indicators/window.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace velumar {

void Window::Add(double value) {
  values_[next_] = value;
  next_ = (next_ + 1) % values_.size();
  if (next_ == 0) full_ = true;
}

double Window::Highest() const { return *std::max_element(values_.begin(), values_.end()); }

double Window::Lowest() const { return *std::min_element(values_.begin(), values_.end()); }

double Window::Mean() const {
  return std::accumulate(values_.begin(), values_.end(), 0.0) / Length();
}

double Window::Deviation() const {
  const double mean = Mean();
  double squares = 0;
  for (const double value : values_) squares += (value - mean) * (value - mean);
  return std::sqrt(squares / Length());
}

double Window::WeightedMean() const {
  double sum = 0;
  for (int i = 0; i < Length(); ++i) {
    sum += (i + 1) * values_[(next_ + static_cast<std::size_t>(i)) % values_.size()];
  }
  return sum / (0.5 * Length() * (Length() + 1));
}

}  // namespace velumar
