#pragma once

#include <deque>
#include <vector>

#include "charthost/indicators/indicator.h"

namespace velumar {

// How many bars at the start are the same in both series, open interest aside.
int SameBars(const BarArrays& one, const BarArrays& other);

// The values of one indicator at all bars of a series. One more bar costs one step. It keeps copies
// of the indicator at some of the last bars, so that a replay that steps back, or a newest bar that
// is replaced, costs a few steps too.
class IndicatorRun {
 public:
  IndicatorRun(Indicator start, std::size_t lines);

  // Takes over the bars, of which the first `same` are those of the last call. A high below the
  // close, or a low above it, counts as the close.
  void Follow(const BarArrays& bars, int same);
  // One value for each bar; kNoValue where there is none.
  const std::vector<double>& Line(std::size_t index) const { return lines_[index]; }
  std::size_t LineCount() const { return lines_.size(); }

 private:
  struct Copy {
    int bars;  // taken by then
    Indicator state;
  };

  int Size() const { return static_cast<int>(lines_.front().size()); }
  void GoBackTo(int bars);

  Indicator start_;
  Indicator state_;
  std::deque<Copy> copies_;
  std::vector<std::vector<double>> lines_;
};

}  // namespace velumar
