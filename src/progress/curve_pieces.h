#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "progress/equity_curve.h"

namespace velumar {

// What of a piece of the curve adds up. Money is net of costs; R is before costs.
enum Sum : std::uint8_t {
  kPieces,
  kTrades,
  kWins,
  kLosses,
  kWon,
  kLost,  // without its sign
  kNet,
  kCosts,
  kMultiples,    // R
  kWithRisk,     // trades with R
  kHoldingBars,  // from entry to exit
  kTimedTrades,  // trades with known bars, the exit not before the entry
  kBars,
  kBarsInMarket,  // with an open trade
  kHeldValue,     // quantity x entry price x money per point x bars
  kAccountBars,   // starting money of the session x bars
  kReturns,       // equity / equity at the bar before - 1
  kSquaredReturns,
  kSquaredFalls,  // of the returns below 0
  kLogGrowth,     // natural logarithm of the last equity / the one before the piece
  kYears,
  kSumCount
};
using PieceSums = std::array<double, kSumCount>;

// What the order of the bars adds: falls from the highest equity so far.
struct PathFigures {
  double fall = 0;           // the deepest, in money
  double fall_share = 0;     // the deepest, as a share of the peak
  double squared_falls = 0;  // shares, squared and summed over the bars
  double longest = 0;        // most bars in a row below the highest equity
};

// The curve cut into pieces, one for each session or one for each trade, which can be put together
// again in any order and number: in money as amounts, in percent as growth. Both give the curve
// itself if the order is its own. Sums and falls of a new order take a few steps for each piece,
// however many bars it has.
//
// If the equity is ever 0 or less, growth and returns have no value: what needs them is NaN.
class CurvePieces {
 public:
  enum class By : std::uint8_t { kSession, kTrade };

  // The piece of a trade holds the bars after the completion of the trade before it until its own;
  // that of the session's last trade also holds the bars after it.
  CurvePieces(const Played& played, std::span<const std::int32_t> selection,
              const EquityCurve& curve, By by);

  std::size_t Count() const { return sums_.size(); }
  const PieceSums& Sums(std::size_t piece) const { return sums_[piece]; }
  // Of the pieces in the order given.
  PathFigures Path(std::span<const std::uint32_t> order) const;

 private:
  // A bar at which a piece reaches a new highest equity, and the bars before and from it on.
  // Heights are relative to the equity before the piece. The first is that equity itself, before
  // any bar.
  struct Peak {
    double height = 1;
    double before = 0;          // sum of the heights of the earlier bars
    double squared_before = 0;  // sum of their squares
    double lowest_before = 1;
    std::int32_t bars_before = 0;
    std::int32_t longest_after = 0;  // as in PathFigures, for the rest of the piece alone
    double fall_after = 0;
    double squared_falls_after = 0;
  };
  struct Shape {
    std::int32_t first_peak = 0;  // in peaks_
    std::int32_t peaks = 0;
    std::int32_t bars = 0;
    std::int32_t below_at_end = 0;  // bars in a row below the last peak
    double end = 1;                 // height of the last bar
    double change = 0;              // money
    double low = 0;                 // of the money, relative to that before the piece
    double high = 0;
    double fall = 0;
    Peak whole;  // what a peak after the last bar would have before it
  };
  struct Stretch {
    std::size_t first = 0;  // bar of the curve
    std::size_t end = 0;
  };

  void AddPiece(const EquityCurve& curve, Stretch stretch, double years, double account);
  void AddTrade(const PlayedTrade& trade);
  Shape ShapeOf(const EquityCurve& curve, Stretch stretch);

  std::vector<PieceSums> sums_;
  std::vector<Shape> shapes_;
  std::vector<Peak> peaks_;
};

}  // namespace velumar
