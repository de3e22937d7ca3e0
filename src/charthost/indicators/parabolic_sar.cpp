#include "charthost/indicators/parabolic_sar.h"

#include <algorithm>

namespace velumar {

void ParabolicSar::Open(const Bar& bar) {
  const double rise = double{bar.high} - previous_->high;
  const double fall = double{previous_->low} - bar.low;
  is_long_ = fall <= 0 || fall <= rise;
  sar_ = is_long_ ? previous_->low : previous_->high;
  extreme_ = is_long_ ? bar.high : bar.low;
  factor_ = std::min(step_, most_);
  open_ = true;
}

void ParabolicSar::Turn(const Bar& bar) {
  is_long_ = !is_long_;
  sar_ = is_long_ ? std::min<double>({extreme_, bar.low, previous_->low})
                  : std::max<double>({extreme_, bar.high, previous_->high});
  extreme_ = is_long_ ? bar.high : bar.low;
  factor_ = std::min(step_, most_);
}

IndicatorLines ParabolicSar::operator()(const Bar& bar) {
  if (!previous_) {
    previous_ = bar;
    return Lines(kNoValue);
  }
  if (!open_) Open(bar);
  if (is_long_ ? bar.low <= sar_ : bar.high >= sar_) {
    Turn(bar);
  } else if (is_long_ ? bar.high > extreme_ : bar.low < extreme_) {
    extreme_ = is_long_ ? bar.high : bar.low;
    factor_ = std::min(factor_ + step_, most_);
  }
  const double now = sar_;
  sar_ += factor_ * (extreme_ - sar_);
  sar_ = is_long_ ? std::min<double>({sar_, bar.low, previous_->low})
                  : std::max<double>({sar_, bar.high, previous_->high});
  previous_ = bar;
  return Lines(now);
}

}  // namespace velumar
