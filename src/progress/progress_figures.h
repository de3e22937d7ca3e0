#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "progress/bootstrap.h"
#include "progress/equity_curve.h"

namespace velumar {

inline constexpr int kTooFewTrades = 10;
inline constexpr std::size_t kEnoughSessions = 8;

// A figure over all selected trades. docs/statistics.md has the same names and formulas, and the
// sources.
struct ProgressFigure {
  enum class Unit : std::uint8_t { kCount, kMoney, kShare, kRatio };
  enum class Sureness : std::uint8_t {
    kInterval,
    kTooFew,  // below kTooFewTrades, or from too few sessions
    kNone,    // a number without an interval: an extreme, or nothing varies
  };

  std::string_view name;
  Unit unit = Unit::kCount;
  std::optional<double> value;  // empty: nothing to compute it from
  int n = 0;                    // what it is computed from
  std::string_view counted;     // "trades" or "bars"
  Sureness sureness = Sureness::kNone;
  Interval interval;  // 95 %
  std::string_view formula;
  std::string_view meaning;  // one line for a reader who doesn't know the figures

  std::string ValueText() const;
  // "0.12 to 0.48"; "too few"; "-".
  std::string IntervalText() const;
};

struct ProgressFigures {
  std::vector<ProgressFigure> figures;  // in display order
  std::size_t sessions = 0;             // that have selected trades
  bool over_sessions = false;           // the intervals resample sessions, not trades
};

// The curve is that of the selection (see ChainEquity). Without rounds there are no intervals, so
// that a page can show the values first.
ProgressFigures ComputeFigures(const Played& played, std::span<const std::int32_t> selection,
                               const EquityCurve& curve, const RoundOptions& options);

}  // namespace velumar
