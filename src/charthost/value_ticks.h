#pragma once

#include <vector>

namespace velumar {

// Round values between the two ends for marks on a value axis, about `wanted` of them: steps of
// 1, 2 or 5 times a power of ten. On a logarithmic axis from its fourfold on the values are seven
// of each decade, as 1.5 and 7, or 1, 2 and 5 of it, or the decades alone: the most that are
// wanted.
std::vector<double> ValueTicks(double lower, double upper, int wanted, bool logarithmic);

}  // namespace velumar
