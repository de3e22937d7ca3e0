#include "charthost/heikin_ashi.h"

#include <algorithm>

namespace velumar {

void HeikinAshi::Forget(int first) { TruncateBars(bars_, static_cast<std::size_t>(first)); }

const BarSeries& HeikinAshi::Of(const BarSeries& series) {
  for (int bar = bars_.size(); bar < series.size(); ++bar) Append(series, bar);
  bars_.has_opens = true;
  bars_.has_volumes = series.has_volumes;
  return bars_;
}

void HeikinAshi::Append(const BarSeries& series, int bar) {
  const float last = series.closes[bar];
  const float first = series.has_opens ? series.opens[bar] : last;
  const double sum = double{first} + series.highs[bar] + series.lows[bar] + last;
  const auto close = static_cast<float>(sum / 4);
  const float open =
      bars_.size() == 0 ? (first + last) / 2 : (bars_.opens.back() + bars_.closes.back()) / 2;
  bars_.dates.push_back(series.dates[bar]);
  bars_.times.push_back(series.times[bar]);
  bars_.opens.push_back(open);
  bars_.highs.push_back(std::max({series.highs[bar], open, close}));
  bars_.lows.push_back(std::min({series.lows[bar], open, close}));
  bars_.closes.push_back(close);
  bars_.volumes.push_back(series.volumes[bar]);
}

}  // namespace velumar
