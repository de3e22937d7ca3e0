#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "marketdata/bar_codec.h"

namespace velumar {

// Bars are in order by their moments: keys that rise with the date, then the time.
using BarKey = std::int64_t;

inline BarKey TimestampKey(std::int32_t date, std::int32_t time) {
  constexpr BarKey kTimesPerDate = 100'000'000;
  return date * kTimesPerDate + time;
}

bool IsStrictlyRising(const std::vector<BarKey>& keys);
// The places of `keys` in rising order; of equal keys the last place alone.
std::vector<std::size_t> PlacesInOrder(const std::vector<BarKey>& keys);

// Other programs leave files with bars out of order or of one moment twice. Brings the arrays into
// the order that the writer would give them, so that every reader counts the same bars.
void PutInOrder(BarArrays& bars);

}  // namespace velumar
