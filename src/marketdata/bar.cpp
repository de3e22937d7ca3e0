#include "marketdata/bar.h"

#include <algorithm>
#include <functional>
#include <numeric>

namespace velumar {

namespace {

template <typename Value>
void Reorder(std::vector<Value>& values, const std::vector<std::size_t>& places) {
  std::vector<Value> reordered;
  reordered.reserve(places.size());
  for (const std::size_t place : places) reordered.push_back(values[place]);
  values = std::move(reordered);
}

bool IsSorted(const BarArrays& bars) {
  for (std::size_t i = 1; i < bars.dates.size(); ++i) {
    if (bars.dates[i] < bars.dates[i - 1]) return false;
    if (bars.dates[i] == bars.dates[i - 1] && bars.times[i] <= bars.times[i - 1]) return false;
  }
  return true;
}

}  // namespace

void BarArrays::Truncate(std::size_t count) {
  if (count >= dates.size()) return;
  dates.resize(count);
  times.resize(count);
  for (auto* values : {&opens, &highs, &lows, &closes, &volumes, &open_interests}) {
    values->resize(count);
  }
}

bool IsStrictlyRising(const std::vector<BarKey>& keys) {
  return std::ranges::adjacent_find(keys, std::greater_equal<>()) == keys.end();
}

std::vector<std::size_t> SortedPlaces(const std::vector<BarKey>& keys) {
  std::vector<std::size_t> places(keys.size());
  std::iota(places.begin(), places.end(), std::size_t{0});
  std::ranges::stable_sort(places, {}, [&](std::size_t place) { return keys[place]; });
  std::vector<std::size_t> kept;
  for (const std::size_t place : places) {
    if (!kept.empty() && keys[kept.back()] == keys[place]) kept.pop_back();
    kept.push_back(place);
  }
  return kept;
}

void SortBars(BarArrays& bars) {
  if (IsSorted(bars)) return;
  std::vector<BarKey> keys(bars.dates.size());
  std::ranges::transform(bars.dates, bars.times, keys.begin(), TimestampKey);
  const std::vector<std::size_t> places = SortedPlaces(keys);
  Reorder(bars.dates, places);
  Reorder(bars.times, places);
  for (auto* values :
       {&bars.opens, &bars.highs, &bars.lows, &bars.closes, &bars.volumes, &bars.open_interests}) {
    Reorder(*values, places);
  }
}

}  // namespace velumar
