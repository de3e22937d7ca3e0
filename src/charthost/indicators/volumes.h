#pragma once

#include <optional>

#include "charthost/indicators/indicator.h"

namespace velumar {

// On-balance volume: Joseph E. Granville, "Granville's New Key to Stock Market Profits", 1963. The
// volumes of rising closes less those of falling ones, from 0 at the first bar on.
class OnBalanceVolume {
 public:
  IndicatorLines operator()(const Bar& bar) {
    if (close_ && bar.close > *close_) balance_ += bar.volume;
    if (close_ && bar.close < *close_) balance_ -= bar.volume;
    close_ = bar.close;
    return Lines(balance_);
  }

 private:
  std::optional<float> close_;
  double balance_ = 0;
};

}  // namespace velumar
