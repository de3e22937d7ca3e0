#pragma once

#include "charthost/indicators/averages.h"
#include "charthost/indicators/ranges.h"
#include "charthost/indicators/window.h"

namespace velumar {

// Lines around the price: upper, middle, lower.

// The mean of the last closes, and `width` standard deviations of them above and below it: John
// Bollinger, "Bollinger on Bollinger Bands", 2001. Period 2 to 999, usually 20; width 0.1 to 10,
// usually 2.
class BollingerBands {
 public:
  BollingerBands(int period, double width) : window_(period), width_(width) {}
  IndicatorLines operator()(const Bar& bar);

 private:
  Window window_;
  double width_;
};

// The exponential average of the closes, and `width` average true ranges above and below it: Linda
// Bradford Raschke's form of the channel in Chester W. Keltner, "How to Make Money in Commodities",
// 1960. Period 1 to 999, usually 20; period of the range 1 to 999, usually 10; width 0.1 to 10,
// usually 2.
class KeltnerChannel {
 public:
  KeltnerChannel(int period, int range_period, double width)
      : middle_(ExponentialAverage(period)), range_(range_period), width_(width) {}
  IndicatorLines operator()(const Bar& bar);

 private:
  SmoothedAverage middle_;
  AverageTrueRange range_;
  double width_;
};

// The highest high and the lowest low of the last bars with the newest one, and their middle:
// Richard Donchian's channel, as in Curtis M. Faith, "Way of the Turtle", 2007. Period 1 to 999,
// usually 20.
class DonchianChannel {
 public:
  explicit DonchianChannel(int period) : highs_(period), lows_(period) {}
  IndicatorLines operator()(const Bar& bar);

 private:
  Window highs_;
  Window lows_;
};

}  // namespace velumar
