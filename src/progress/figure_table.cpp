#include "progress/figure_table.h"

#include <array>
#include <cmath>
#include <limits>

namespace velumar {

namespace {

using Method = FigureRow::Method;
using Unit = ProgressFigure::Unit;

// NaN for 0 / 0, and infinite for a profit without a loss, which the order of values keeps.
double RatioOf(double part, double whole) { return part / whole; }

double MeanReturn(const Whole& whole) { return whole.sums[kReturns] / whole.sums[kBars]; }

double ReturnDeviation(const Whole& whole) {
  const double bars = whole.sums[kBars];
  const double squares = whole.sums[kSquaredReturns] - bars * MeanReturn(whole) * MeanReturn(whole);
  return std::sqrt(squares / (bars - 1));
}

// The square root of the bars per year.
double Annual(const Whole& whole) { return std::sqrt(whole.sums[kBars] / whole.sums[kYears]); }

double GrowthPerYear(const Whole& whole) {
  return std::expm1(whole.sums[kLogGrowth] / whole.sums[kYears]);
}

// The deepest fall in percent has no value once the account was lost.
double FallShare(const Whole& whole) {
  return std::isnan(whole.sums[kLogGrowth]) ? whole.sums[kLogGrowth] : whole.path.fall_share;
}

double UlcerIndex(const Whole& whole) {
  if (std::isnan(whole.sums[kLogGrowth])) return whole.sums[kLogGrowth];
  return std::sqrt(whole.path.squared_falls / whole.sums[kBars]);
}

double ExtremeOrNothing(double extreme) {
  return extreme == 0 ? std::numeric_limits<double>::quiet_NaN() : extreme;
}

double PerPiece(const Whole& whole) { return whole.sums[kPieces]; }
double Negative(const Whole& /*whole*/) { return -1; }

constexpr FigureRow kTable[] = {
    {.name = "Trades",
     .value = [](const Whole& whole) { return whole.sums[kTrades]; },
     .formula = "Number of closed quantities: first in, first out within a side.",
     .meaning = "Closed trades that this is computed from."},
    {.name = "Win rate",
     .unit = Unit::kShare,
     .method = Method::kRatio,
     .numerator = kWins,
     .denominator = kTrades,
     .formula = "Trades with a profit after costs / trades.",
     .meaning = "How often a trade made money."},
    {.name = "Expectancy",
     .unit = Unit::kMoney,
     .method = Method::kRatio,
     .numerator = kNet,
     .denominator = kTrades,
     .formula = "Profit of all trades after costs / trades.",
     .meaning = "What an average trade brought after costs."},
    {.name = "Expectancy in R",
     .unit = Unit::kRatio,
     .counted = kWithRisk,
     .method = Method::kRatio,
     .numerator = kMultiples,
     .denominator = kWithRisk,
     .formula = "Result of a trade before costs / what its plan risked at the entry, averaged over "
                "the trades whose plan had a stop.",
     .meaning = "Average result next to what was risked."},
    {.name = "Profit factor",
     .unit = Unit::kRatio,
     .enough = kWins,
     .enough_of_others = kLosses,
     .method = Method::kPositiveRatio,
     .numerator = kWon,
     .denominator = kLost,
     .formula = "Profit of the winning trades / loss of the losing trades, both after costs and "
                "without their sign.",
     .meaning = "Money won for each unit lost."},
    {.name = "Payoff ratio",
     .unit = Unit::kRatio,
     .enough = kWins,
     .enough_of_others = kLosses,
     .method = Method::kResampled,
     .value =
         [](const Whole& whole) {
           return RatioOf(whole.sums[kWon], whole.sums[kWins]) /
                  RatioOf(whole.sums[kLost], whole.sums[kLosses]);
         },
     .formula = "Average win / average loss, both without their sign.",
     .meaning = "Average win next to average loss."},
    {.name = "Average win",
     .unit = Unit::kMoney,
     .counted = kWins,
     .method = Method::kPositiveRatio,
     .numerator = kWon,
     .denominator = kWins,
     .formula = "Profit of the winning trades after costs / their number.",
     .meaning = "What a winning trade brought."},
    {.name = "Average loss",
     .unit = Unit::kMoney,
     .counted = kLosses,
     .method = Method::kPositiveRatio,
     .numerator = kLost,
     .denominator = kLosses,
     .scale = Negative,
     .formula = "Loss of the losing trades after costs / their number.",
     .meaning = "What a losing trade cost."},
    {.name = "Largest win",
     .unit = Unit::kMoney,
     .value = [](const Whole& whole) { return ExtremeOrNothing(whole.extremes.largest_win); },
     .formula = "The largest profit of one trade after costs.",
     .meaning = "Luck, if it is most of the profit."},
    {.name = "Largest loss",
     .unit = Unit::kMoney,
     .value = [](const Whole& whole) { return ExtremeOrNothing(whole.extremes.largest_loss); },
     .formula = "The largest loss of one trade after costs.",
     .meaning = "Far above the average: a stop not kept."},
    {.name = "Max consecutive wins",
     .value = [](const Whole& whole) { return static_cast<double>(whole.extremes.most_wins); },
     .formula = "The most winning trades in a row, in the order they were closed, from session to "
                "session. A break-even trade ends the streak.",
     .meaning = "Longest row of wins."},
    {.name = "Max consecutive losses",
     .value = [](const Whole& whole) { return static_cast<double>(whole.extremes.most_losses); },
     .formula = "The most losing trades in a row, in the order they were closed, from session to "
                "session. A break-even trade ends the streak.",
     .meaning = "Longest row of losses to bear."},
    {.name = "Time in trade",
     .unit = Unit::kRatio,
     .counted = kTimedTrades,
     .method = Method::kPositiveRatio,
     .numerator = kHoldingBars,
     .denominator = kTimedTrades,
     .formula = "Bars from entry to exit, averaged over the trades.",
     .meaning = "How many bars a trade was held."},
    {.name = "Time in market",
     .unit = Unit::kShare,
     .counted = kBars,
     .method = Method::kRatio,
     .numerator = kBarsInMarket,
     .denominator = kBars,
     .formula = "Bars with an open trade / bars.",
     .meaning = "How much of the time a trade was open."},
    {.name = "Exposure",
     .unit = Unit::kShare,
     .counted = kBars,
     .method = Method::kResampled,
     .value = [](const Whole& whole) { return whole.sums[kHeldValue] / whole.sums[kAccountBars]; },
     .formula = "Quantity held x entry price x money per point, summed over the bars / starting "
                "money of the session, summed over the bars.",
     .meaning = "Size of the positions next to the account."},
    {.name = "Costs",
     .unit = Unit::kMoney,
     .method = Method::kPositiveRatio,
     .numerator = kCosts,
     .denominator = kPieces,
     .scale = PerPiece,
     .formula = "Commission and VAT of the entries and exits.",
     .meaning = "Commission and VAT."},
    {.name = "Net profit",
     .unit = Unit::kMoney,
     .method = Method::kRatio,
     .numerator = kNet,
     .denominator = kPieces,
     .scale = PerPiece,
     .formula = "Profit of all trades after costs.",
     .meaning = "What is left of all trades after costs."},
    {.name = "Return",
     .unit = Unit::kShare,
     .method = Method::kRatio,
     .numerator = kNet,
     .denominator = kPieces,
     .scale = [](const Whole& whole) { return whole.sums[kPieces] / whole.starting_money; },
     .formula = "Net profit / starting money of the first session.",
     .meaning = "Net profit next to the money at the start."},
    {.name = "CAGR",
     .unit = Unit::kShare,
     .counted = kBars,
     .method = Method::kResampled,
     .value = GrowthPerYear,
     .formula = "(Last equity / starting money) to the power 1 / years - 1, after costs.",
     .meaning = "Growth of the account in a year."},
    {.name = "Volatility",
     .unit = Unit::kShare,
     .counted = kBars,
     .method = Method::kResampled,
     .value = [](const Whole& whole) { return ReturnDeviation(whole) * Annual(whole); },
     .formula = "Standard deviation of the returns of the bars x square root of the bars per year, "
                "after costs.",
     .meaning = "How much the account varies in a year."},
    {.name = "Sharpe ratio",
     .unit = Unit::kRatio,
     .counted = kBars,
     .method = Method::kResampled,
     .value =
         [](const Whole& whole) {
           return RatioOf(MeanReturn(whole), ReturnDeviation(whole)) * Annual(whole);
         },
     .formula = "Mean return of the bars / their standard deviation x square root of the bars per "
                "year, after costs, without interest.",
     .meaning = "Return next to its ups and downs."},
    {.name = "Sortino ratio",
     .unit = Unit::kRatio,
     .counted = kBars,
     .method = Method::kResampled,
     .value =
         [](const Whole& whole) {
           const double downside = std::sqrt(whole.sums[kSquaredFalls] / whole.sums[kBars]);
           return RatioOf(MeanReturn(whole), downside) * Annual(whole);
         },
     .formula = "Mean return of the bars / square root of the mean of their squared losses, gains "
                "counted as 0 x square root of the bars per year, after costs.",
     .meaning = "Return next to its downs alone."},
    {.name = "Max drawdown",
     .unit = Unit::kMoney,
     .counted = kBars,
     .method = Method::kResampled,
     .value = [](const Whole& whole) { return whole.path.fall; },
     .formula = "The largest fall of the equity from its peak, bar by bar, after costs. The "
                "starting money is the first peak.",
     .meaning = "Deepest fall of the account from a peak."},
    {.name = "Max drawdown in percent",
     .unit = Unit::kShare,
     .counted = kBars,
     .method = Method::kResampled,
     .value = FallShare,
     .formula = "The largest of the falls / the peak each fell from.",
     .meaning = "The same as a share of the peak."},
    {.name = "Longest drawdown",
     .counted = kBars,
     .method = Method::kResampled,
     .value = [](const Whole& whole) { return whole.path.longest; },
     .formula = "The most bars in a row with the equity below its peak.",
     .meaning = "Most bars below an earlier peak."},
    {.name = "Recovery factor",
     .unit = Unit::kRatio,
     .counted = kBars,
     .method = Method::kResampled,
     .value = [](const Whole& whole) { return RatioOf(whole.sums[kNet], whole.path.fall); },
     .formula = "Net profit / max drawdown.",
     .meaning = "Net profit next to the deepest fall."},
    {.name = "Ulcer index",
     .unit = Unit::kShare,
     .counted = kBars,
     .method = Method::kResampled,
     .value = UlcerIndex,
     .formula = "Square root of the mean of the squared falls in percent from the peak, bar by "
                "bar, after costs.",
     .meaning = "How deep and how long the falls were."},
    {.name = "MAR ratio",
     .unit = Unit::kRatio,
     .counted = kBars,
     .method = Method::kResampled,
     .value = [](const Whole& whole) { return RatioOf(GrowthPerYear(whole), FallShare(whole)); },
     .formula = "CAGR / max drawdown in percent.",
     .meaning = "Growth in a year next to the deepest fall."},
};

}  // namespace

std::span<const FigureRow> FigureTable() { return kTable; }

}  // namespace velumar
