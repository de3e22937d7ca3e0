#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "progress/curve_pieces.h"
#include "progress/progress_figures.h"

namespace velumar {

// Of the trades in the order they were closed.
struct Extremes {
  double largest_win = 0;
  double largest_loss = 0;
  int most_wins = 0;  // in a row
  int most_losses = 0;
};

// What figures are computed from: all pieces of a curve, or those that a round drew.
struct Whole {
  double starting_money = 0;
  PieceSums sums{};
  PathFigures path = {};
  Extremes extremes = {};  // not of a round
};

struct FigureRow {
  enum class Method : std::uint8_t {
    kNone,           // no interval
    kRatio,          // numerator / denominator, with a bootstrap-t interval
    kPositiveRatio,  // the same on the logarithm
    kResampled,      // another value, with an expanded percentile interval
  };

  std::string_view name;
  ProgressFigure::Unit unit = ProgressFigure::Unit::kCount;
  Sum counted = kTrades;  // n
  Sum enough = kTrades;   // of these, too, there must be ten for an interval
  Sum enough_of_others = kTrades;
  Method method = Method::kNone;
  // Of a ratio. A scale multiplies ratio and interval.
  Sum numerator = kTrades;
  Sum denominator = kPieces;
  double (*scale)(const Whole&) = nullptr;
  // Of another figure. NaN or infinite if it has no value.
  double (*value)(const Whole&) = nullptr;
  std::string_view formula;
  std::string_view meaning;  // one line for a reader who doesn't know the figures
};

// All figures in display order.
std::span<const FigureRow> FigureTable();

}  // namespace velumar
