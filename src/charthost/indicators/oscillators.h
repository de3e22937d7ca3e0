#pragma once

#include <optional>

#include "charthost/indicators/averages.h"
#include "charthost/indicators/window.h"

namespace velumar {

// Relative strength index: J. Welles Wilder, "New Concepts in Technical Trading Systems", 1978,
// section VI.
//   RSI = 100 - 100 / (1 + average gain / average loss)
// of the changes of the close, with Wilder's averages; 100 without losses, 50 without any change.
// Period 1 to 999, usually 14: the first value is at bar 15.
class RelativeStrength {
 public:
  explicit RelativeStrength(int period)
      : gains_(WilderAverage(period)), losses_(WilderAverage(period)) {}
  IndicatorLines operator()(const Bar& bar);

 private:
  SmoothedAverage gains_;
  SmoothedAverage losses_;
  std::optional<double> close_;
};

// Moving average convergence/divergence: Gerald Appel, "The Moving Average Convergence-Divergence
// Trading Method", 1979.
//   MACD = exponential average of `fast` closes - that of `slow` closes
//   signal = exponential average of `signal` MACDs;  histogram = MACD - signal
// Periods 1 to 999, usually 12, 26 and 9: the MACD begins at bar 26, the signal at bar 34.
class ConvergenceDivergence {
 public:
  ConvergenceDivergence(int fast, int slow, int signal)
      : fast_(ExponentialAverage(fast)),
        slow_(ExponentialAverage(slow)),
        signal_(ExponentialAverage(signal)) {}
  IndicatorLines operator()(const Bar& bar);

 private:
  SmoothedAverage fast_;
  SmoothedAverage slow_;
  SmoothedAverage signal_;
};

// Stochastic oscillator: George C. Lane, "Lane's Stochastics", Technical Analysis of Stocks &
// Commodities 2, 1984.
//   raw = 100 x (close - lowest low) / (highest high - lowest low) of the last `period` bars
//   %K = simple average of `slowing` raw values;  %D = simple average of `signal` %K
// 50 if all prices are equal. Periods 1 to 999, usually 14, 3 and 3; a slowing of 1 is the fast
// stochastic.
class Stochastic {
 public:
  Stochastic(int period, int slowing, int signal)
      : highs_(period), lows_(period), slowing_(slowing), signal_(signal) {}
  IndicatorLines operator()(const Bar& bar);

 private:
  Window highs_;
  Window lows_;
  SimpleAverage slowing_;
  SimpleAverage signal_;
};

// 100 x close / close of `period` bars before: Steven B. Achelis, "Technical Analysis from A to Z",
// 2nd edition, 2000, page 197. No value if that close is 0. Period 1 to 999, usually 12.
class Momentum {
 public:
  explicit Momentum(int period) : closes_(period) {}
  IndicatorLines operator()(const Bar& bar);

 private:
  Window closes_;
};

}  // namespace velumar
