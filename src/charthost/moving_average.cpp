#include "charthost/moving_average.h"

#include <limits>

namespace velumar {

void MovingAverage(const std::vector<float>& closes, int period, std::vector<double>& averages) {
  averages.assign(closes.size(), std::numeric_limits<double>::quiet_NaN());
  const auto length = static_cast<std::size_t>(period);
  double sum = 0;
  for (std::size_t i = 0; i < closes.size(); ++i) {
    sum += closes[i];
    if (i >= length) sum -= closes[i - length];
    if (i + 1 >= length) averages[i] = sum / period;
  }
}

}  // namespace velumar
