#include "progress/progress_figures.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "base/number_text.h"
#include "progress/curve_pieces.h"
#include "progress/figure_table.h"
#include "results/figure_texts.h"

namespace velumar {

namespace {

using Method = FigureRow::Method;

constexpr int kFewestUnits = 5;

bool IsRatio(const FigureRow& row) {
  return row.method == Method::kRatio || row.method == Method::kPositiveRatio;
}

// A profit factor and its like vary evenly as logarithms only.
RatioOfSums OnItsScale(const FigureRow& row, const RatioOfSums& ratio) {
  if (row.method != Method::kPositiveRatio) return ratio;
  return {std::log(ratio.ratio), ratio.error / ratio.ratio};
}

Extremes ExtremesOf(const Played& played, std::span<const std::int32_t> selection) {
  Extremes found;
  int wins = 0;
  int losses = 0;
  for (const std::int32_t place : selection) {
    const double net = played.TradeAt(place).Net();
    wins = net > 0 ? wins + 1 : 0;
    losses = net < 0 ? losses + 1 : 0;
    found.largest_win = std::max(found.largest_win, net);
    found.largest_loss = std::min(found.largest_loss, net);
    found.most_wins = std::max(found.most_wins, wins);
    found.most_losses = std::max(found.most_losses, losses);
  }
  return found;
}

// What the pieces add up to in that order; the extremes are left open.
Whole SumUp(const CurvePieces& pieces, double starting_money,
            std::span<const std::uint32_t> order) {
  Whole whole{.starting_money = starting_money, .path = pieces.Path(order)};
  for (const std::uint32_t piece : order) {
    const PieceSums& part = pieces.Sums(piece);
    for (std::size_t i = 0; i < part.size(); ++i) whole.sums[i] += part[i];
  }
  return whole;
}

// Each piece once, as the curve has them.
std::vector<std::uint32_t> AllOf(const CurvePieces& pieces) {
  std::vector<std::uint32_t> order(pieces.Count());
  std::iota(order.begin(), order.end(), 0U);
  return order;
}

// Computes the intervals of all figures from the same rounds.
class FigureRounds {
 public:
  FigureRounds(const CurvePieces& pieces, const Whole& whole) : pieces_(pieces), whole_(whole) {
    for (const FigureRow& row : FigureTable()) {
      if (IsRatio(row)) ratios_.push_back(&row);
      if (row.method == Method::kResampled) others_.push_back(&row);
    }
    for (std::size_t piece = 0; piece < pieces.Count(); ++piece) {
      const PieceSums& sums = pieces.Sums(piece);
      for (const FigureRow* row : ratios_) {
        parts_.push_back(RatioSums::Of(sums[row->numerator], sums[row->denominator], Centre(*row)));
      }
    }
  }

  // Sets the intervals of the figures, which are those of the table.
  void Compute(const RoundOptions& options, std::vector<ProgressFigure>& figures) const {
    const std::vector<RatioOfSums> estimates = Ratios(AllOf(pieces_));
    auto values = Resample(pieces_.Count(), ratios_.size() + others_.size(), options,
                           [&](std::span<const std::uint32_t> drawn, std::span<double> round) {
                             ComputeRound(estimates, drawn, round);
                           });
    for (std::size_t i = 0; i < ratios_.size(); ++i) {
      SetInterval(*ratios_[i], OfRatio(*ratios_[i], estimates[i], std::move(values[i])), figures);
    }
    for (std::size_t i = 0; i < others_.size(); ++i) {
      auto& of_rounds = values[ratios_.size() + i];
      SetInterval(*others_[i], ExpandedPercentile(std::move(of_rounds), pieces_.Count()), figures);
    }
  }

 private:
  double Centre(const FigureRow& row) const {
    const double denominator = whole_.sums[row.denominator];
    return denominator > 0 ? whole_.sums[row.numerator] / denominator : 0;
  }

  int Contributing(const FigureRow& row) const {
    int count = 0;
    for (std::size_t piece = 0; piece < pieces_.Count(); ++piece) {
      if (pieces_.Sums(piece)[row.counted] > 0) ++count;
    }
    return count;
  }

  void SetInterval(const FigureRow& row, const std::optional<Interval>& interval,
                   std::vector<ProgressFigure>& figures) const {
    ProgressFigure& figure = figures[static_cast<std::size_t>(&row - FigureTable().data())];
    if (figure.sureness == ProgressFigure::Sureness::kTooFew || !figure.value) return;
    if (Contributing(row) < kFewestUnits) {
      figure.sureness = ProgressFigure::Sureness::kTooFew;
    } else if (interval) {
      figure.interval = *interval;
      figure.sureness = ProgressFigure::Sureness::kInterval;
    }
  }

  std::vector<RatioOfSums> Ratios(std::span<const std::uint32_t> drawn) const {
    std::vector<RatioSums> sums(ratios_.size());
    for (const std::uint32_t piece : drawn) {
      const RatioSums* part = &parts_[piece * ratios_.size()];
      for (std::size_t i = 0; i < sums.size(); ++i) sums[i] += part[i];
    }
    std::vector<RatioOfSums> ratios;
    ratios.reserve(sums.size());
    for (std::size_t i = 0; i < sums.size(); ++i) {
      const FigureRow& row = *ratios_[i];
      ratios.push_back(OnItsScale(row, sums[i].Ratio(Centre(row), drawn.size())));
    }
    return ratios;
  }

  // Fills in the values of the ratios, then those of the others.
  void ComputeRound(const std::vector<RatioOfSums>& estimates, std::span<const std::uint32_t> drawn,
                    std::span<double> values) const {
    const auto others =
        std::ranges::transform(estimates, Ratios(drawn), values.begin(), StudentisedValue).out;
    const Whole whole = SumUp(pieces_, whole_.starting_money, drawn);
    std::ranges::transform(others_, others,
                           [&](const FigureRow* row) { return row->value(whole); });
  }

  std::optional<Interval> OfRatio(const FigureRow& row, const RatioOfSums& estimate,
                                  std::vector<double> values) const {
    auto interval = Studentised(estimate, std::move(values));
    if (!interval) return interval;
    if (row.method == Method::kPositiveRatio) {
      interval = Interval{std::exp(interval->low), std::exp(interval->high)};
    } else if (row.unit == ProgressFigure::Unit::kShare && row.scale == nullptr) {
      interval = Interval{std::max(interval->low, 0.0), std::min(interval->high, 1.0)};
    }
    const double scale = row.scale == nullptr ? 1 : row.scale(whole_);
    const double one = interval->low * scale;
    const double other = interval->high * scale;
    return Interval{std::min(one, other), std::max(one, other)};
  }

  const CurvePieces& pieces_;
  const Whole& whole_;
  std::vector<const FigureRow*> ratios_;
  std::vector<const FigureRow*> others_;  // with an interval
  std::vector<RatioSums> parts_;          // of each piece, for each ratio
};

double ValueOf(const FigureRow& row, const Whole& whole) {
  if (!IsRatio(row)) return row.value(whole);
  const double ratio = whole.sums[row.numerator] / whole.sums[row.denominator];
  return row.scale == nullptr ? ratio : ratio * row.scale(whole);
}

std::string TextOf(ProgressFigure::Unit unit, double value) {
  if (std::isinf(value)) return value > 0 ? "infinite" : "-infinite";
  switch (unit) {
    case ProgressFigure::Unit::kCount:
      return GroupedNumber(ExactText(static_cast<std::int64_t>(std::llround(value))));
    case ProgressFigure::Unit::kShare:
      return PercentText(value);
    case ProgressFigure::Unit::kMoney:
    case ProgressFigure::Unit::kRatio:
      break;
  }
  return MoneyText(value);
}

}  // namespace

std::string ProgressFigure::ValueText() const {
  return value ? TextOf(unit, *value) : std::string(kNoFigure);
}

std::string ProgressFigure::IntervalText() const {
  if (sureness == Sureness::kTooFew) return "too few";
  if (sureness == Sureness::kNone) return kNoFigure;
  return TextOf(unit, interval.low) + " to " + TextOf(unit, interval.high);
}

ProgressFigures ComputeFigures(const Played& played, std::span<const std::int32_t> selection,
                               const EquityCurve& curve, const RoundOptions& options) {
  ProgressFigures result;
  result.sessions = curve.parts.size();
  result.over_sessions = result.sessions >= kEnoughSessions;
  const CurvePieces pieces(
      played, selection, curve,
      result.over_sessions ? CurvePieces::By::kSession : CurvePieces::By::kTrade);
  Whole whole = SumUp(pieces, curve.starting_money, AllOf(pieces));
  whole.extremes = ExtremesOf(played, selection);
  for (const FigureRow& row : FigureTable()) {
    const double value = ValueOf(row, whole);
    const auto n = static_cast<int>(whole.sums[row.counted]);
    const bool bars = row.counted == kBars;
    const double fewest =
        std::min({whole.sums[kTrades], whole.sums[row.enough], whole.sums[row.enough_of_others]});
    const bool few = fewest < kTooFewTrades || (!bars && n < kTooFewTrades);
    result.figures.push_back({.name = row.name,
                              .unit = row.unit,
                              .value = std::isfinite(value) ? std::optional(value) : std::nullopt,
                              .n = n,
                              .counted = bars ? "bars" : "trades",
                              .sureness = few && row.method != Method::kNone
                                              ? ProgressFigure::Sureness::kTooFew
                                              : ProgressFigure::Sureness::kNone,
                              .interval = {},
                              .formula = row.formula,
                              .meaning = row.meaning});
  }
  if (options.count > 0 && whole.sums[kTrades] >= kTooFewTrades) {
    FigureRounds(pieces, whole).Compute(options, result.figures);
  }
  return result;
}

}  // namespace velumar
