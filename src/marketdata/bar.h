#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace velumar {

// One bar of a series. `date` is yyyymmdd, `time` hhmmss (0 if the series stores none); prices,
// volume and open interest are 32-bit floats, 0 if the data file lacks the field.
struct Bar {
  std::int32_t date = 0;
  std::int32_t time = 0;
  float open = 0;
  float high = 0;
  float low = 0;
  float close = 0;
  float volume = 0;
  float open_interest = 0;

  bool operator==(const Bar&) const = default;
};

// A series as eight parallel arrays, oldest bar first.
struct BarArrays {
  std::vector<std::int32_t> dates;
  std::vector<std::int32_t> times;
  std::vector<float> opens;
  std::vector<float> highs;
  std::vector<float> lows;
  std::vector<float> closes;
  std::vector<float> volumes;
  std::vector<float> open_interests;

  // Drops the bars after the first `count`.
  void Truncate(std::size_t count);
};

// Bars are ordered by date, then time; the key rises with both.
using BarKey = std::int64_t;

inline BarKey TimestampKey(std::int32_t date, std::int32_t time) {
  constexpr BarKey kTimesPerDate = 100'000'000;
  return date * kTimesPerDate + time;
}

bool IsStrictlyRising(const std::vector<BarKey>& keys);
// The indices of `keys` in rising order; of equal keys only the last one.
std::vector<std::size_t> SortedPlaces(const std::vector<BarKey>& keys);

// Sorts the bars as the writer would, keeping the last of equal timestamps: other programs leave
// files with unsorted or duplicate bars, and every reader must count the same bars.
void SortBars(BarArrays& bars);

}  // namespace velumar
