#pragma once

#include <vector>

namespace velumar {

// Round values between the two ends for marks on a value axis, about `wanted` of them: steps of
// 1, 2 or 5 times a power of ten. Over more than a decade of a logarithmic axis the values are 1, 2
// and 5 of each decade, or the decades alone.
std::vector<double> ValueTicks(double lower, double upper, int wanted, bool logarithmic);

}  // namespace velumar
