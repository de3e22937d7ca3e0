#include "progress/curve_pieces.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

namespace velumar {

namespace {

constexpr double kUndefined = std::numeric_limits<double>::quiet_NaN();

double Square(double value) { return value * value; }

}  // namespace

CurvePieces::CurvePieces(const Played& played, std::span<const std::int32_t> selection,
                         const EquityCurve& curve, By by) {
  std::size_t counted = 0;
  for (const EquityCurve::Part& part : curve.parts) {
    const double account = played.SessionAt(part.session).starting_money;
    const auto first = static_cast<std::size_t>(part.first);
    const auto end = first + static_cast<std::size_t>(part.bars);
    // The trades of the session in the order of their completion.
    std::vector<std::size_t> order(static_cast<std::size_t>(part.trades));
    std::iota(order.begin(), order.end(), counted);
    counted += order.size();
    if (by == By::kTrade) {
      std::ranges::stable_sort(order, {}, [&](std::size_t i) { return curve.completed[i]; });
    } else {
      AddPiece(curve, {first, end}, part.years, account);
    }
    std::size_t begins = first;
    for (const std::size_t i : order) {
      if (by == By::kTrade) {
        const std::size_t ends =
            i == order.back() ? end : static_cast<std::size_t>(curve.completed[i]) + 1;
        const double share = static_cast<double>(ends - begins) / part.bars;
        AddPiece(curve, {begins, ends}, part.years * share, account);
        begins = ends;
      }
      AddTrade(played.TradeAt(selection[i]));
    }
  }
}

void CurvePieces::AddTrade(const PlayedTrade& trade) {
  PieceSums& sums = sums_.back();
  const double net = trade.Net();
  sums[kTrades] += 1;
  sums[kWins] += net > 0 ? 1 : 0;
  sums[kLosses] += net < 0 ? 1 : 0;
  sums[kWon] += std::max(net, 0.0);
  sums[kLost] += std::max(-net, 0.0);
  sums[kNet] += net;
  sums[kCosts] += trade.costs;
  sums[kMultiples] += trade.R().value_or(0);
  sums[kWithRisk] += trade.R() ? 1 : 0;
  if (trade.entry_bar == kAbsent || trade.exit_bar < trade.entry_bar) return;
  const double bars = trade.exit_bar - trade.entry_bar;
  sums[kTimedTrades] += 1;
  sums[kHoldingBars] += bars;
  sums[kHeldValue] += trade.quantity * trade.entry_price * trade.money_per_point * bars;
}

void CurvePieces::AddPiece(const EquityCurve& curve, Stretch stretch, double years,
                           double account) {
  PieceSums sums{};
  sums[kPieces] = 1;
  sums[kYears] = years;
  sums[kBars] = static_cast<double>(stretch.end - stretch.first);
  sums[kAccountBars] = account * sums[kBars];
  double lowest = curve.Before(stretch.first);
  for (std::size_t bar = stretch.first; bar < stretch.end; ++bar) {
    lowest = std::min(lowest, curve.equity[bar]);
    const double change = curve.equity[bar] / curve.Before(bar) - 1;
    sums[kBarsInMarket] += curve.in_market[bar];
    sums[kReturns] += change;
    sums[kSquaredReturns] += Square(change);
    sums[kSquaredFalls] += Square(std::min(change, 0.0));
  }
  if (lowest > 0) {
    sums[kLogGrowth] = std::log(curve.Before(stretch.end) / curve.Before(stretch.first));
  } else {
    for (const Sum sum : {kReturns, kSquaredReturns, kSquaredFalls, kLogGrowth}) {
      sums[sum] = kUndefined;
    }
  }
  sums_.push_back(sums);
  shapes_.push_back(ShapeOf(curve, stretch));
}

CurvePieces::Shape CurvePieces::ShapeOf(const EquityCurve& curve, Stretch stretch) {
  const double start = curve.Before(stretch.first);
  Shape shape;
  shape.first_peak = static_cast<std::int32_t>(peaks_.size());
  shape.bars = static_cast<std::int32_t>(stretch.end - stretch.first);
  Peak& next = shape.whole;  // so far
  peaks_.push_back(next);
  // Forwards: money, and the peaks with what is before them.
  for (std::size_t bar = stretch.first; bar < stretch.end; ++bar) {
    shape.change = curve.equity[bar] - start;
    shape.low = std::min(shape.low, shape.change);
    shape.high = std::max(shape.high, shape.change);
    shape.fall = std::max(shape.fall, shape.high - shape.change);
    shape.end = curve.equity[bar] / start;
    const bool higher = shape.end > peaks_.back().height;
    shape.below_at_end = shape.end < peaks_.back().height ? shape.below_at_end + 1 : 0;
    if (higher) {
      peaks_.push_back(next);
      peaks_.back().height = shape.end;
    }
    ++next.bars_before;
    next.before += shape.end;
    next.squared_before += Square(shape.end);
    next.lowest_before = std::min(next.lowest_before, shape.end);
  }
  shape.peaks = static_cast<std::int32_t>(peaks_.size()) - shape.first_peak;
  // Backwards: what each peak has after it.
  std::size_t end = stretch.end;
  Peak after;
  for (std::size_t i = peaks_.size(); i-- > static_cast<std::size_t>(shape.first_peak);) {
    Peak& peak = peaks_[i];
    const std::size_t first = stretch.first + static_cast<std::size_t>(peak.bars_before);
    std::int32_t below = 0;
    for (std::size_t bar = first; bar < end; ++bar) {
      const double fall = std::max(1 - curve.equity[bar] / start / peak.height, 0.0);
      below = fall > 0 ? below + 1 : 0;
      after.longest_after = std::max(after.longest_after, below);
      after.fall_after = std::max(after.fall_after, fall);
      after.squared_falls_after += Square(fall);
    }
    peak.longest_after = after.longest_after;
    peak.fall_after = after.fall_after;
    peak.squared_falls_after = after.squared_falls_after;
    end = first;
  }
  return shape;
}

PathFigures CurvePieces::Path(std::span<const std::uint32_t> order) const {
  PathFigures path;
  double money = 0;
  double money_peak = 0;
  double height = 1;  // of the equity, relative to the highest so far
  double below = 0;   // bars since it was as high
  for (const std::uint32_t place : order) {
    const Shape& shape = shapes_[place];
    path.fall = std::max({path.fall, shape.fall, money_peak - money - shape.low});
    money_peak = std::max(money_peak, money + shape.high);
    money += shape.change;

    // The first bar of the piece that is as high as the highest equity before it.
    const auto peaks = std::span(peaks_).subspan(static_cast<std::size_t>(shape.first_peak),
                                                 static_cast<std::size_t>(shape.peaks));
    const auto reached = std::ranges::lower_bound(peaks, 1 / height, {}, &Peak::height);
    const bool higher = reached != peaks.end();
    const Peak& until = higher ? *reached : shape.whole;
    path.fall_share = std::max(path.fall_share, 1 - height * until.lowest_before);
    path.squared_falls +=
        until.bars_before - 2 * height * until.before + Square(height) * until.squared_before;
    path.longest = std::max(path.longest, below + until.bars_before);
    if (!higher) {
      below += shape.bars;
      height *= shape.end;
      continue;
    }
    path.fall_share = std::max(path.fall_share, until.fall_after);
    path.squared_falls += until.squared_falls_after;
    path.longest = std::max(path.longest, static_cast<double>(until.longest_after));
    below = shape.below_at_end;
    height = shape.end / peaks.back().height;
  }
  path.squared_falls = std::max(path.squared_falls, 0.0);  // it may round to less
  return path;
}

}  // namespace velumar
