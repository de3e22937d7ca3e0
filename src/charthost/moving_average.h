#pragma once

#include <vector>

namespace velumar {

// The simple average of the last `period` closes at each bar, NaN at the bars before there are
// that many. `period` is at least 1. `averages` keeps its memory from call to call.
void MovingAverage(const std::vector<float>& closes, int period, std::vector<double>& averages);

}  // namespace velumar
