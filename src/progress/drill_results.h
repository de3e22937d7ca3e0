#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ledger/drills.h"
#include "progress/played.h"

namespace velumar {

// Results of drills, from the trades of their sessions. A trade that was entered or closed with
// later bars known doesn't count.

struct DrillFigures {
  int trades = 0;
  int wins = 0;          // net of costs
  double money = 0;      // net of costs
  double multiples = 0;  // R of the trades with a stop in their plan
  int with_risk = 0;     // such trades
  // Moves of the price in the trades' direction, in usual moves of their session. Empty if the
  // bars of a session with trades are gone.
  std::optional<double> moves = 0;

  std::optional<double> WinRate() const {
    return trades > 0 ? std::optional(double(wins) / trades) : std::nullopt;
  }
  std::optional<double> R() const {
    return with_risk > 0 ? std::optional(multiples) : std::nullopt;
  }
};

// Of these sessions of the ledger together.
DrillFigures FiguresOfSessions(const Played& played, const std::vector<int>& sessions);
// "3 trades, 67 % won, 1.4 R, 1,204.00 in money, 2.1 usual moves".
std::string DrillFiguresText(const DrillFigures& figures);

struct DrillResult {
  LedgerDrill drill;
  DrillFigures figures;
  // By usual moves, among the finished drills of as many charts, bars and seconds. 0: it is not
  // finished, or its bars are gone.
  int rank = 0;
  int ranked = 0;  // how many there are

  std::string RankText() const;  // "2 of 7"; "-" without a rank
};

// In the order of the drills.
std::vector<DrillResult> DrillResults(std::vector<LedgerDrill> drills, const Played& played);

// What lists show of a drill.
struct DrillColumn {
  std::string_view title;
  bool numeric = false;
};
inline constexpr std::array<DrillColumn, 9> kDrillColumns{{{"Charts"},
                                                           {"Bars", true},
                                                           {"Limit", true},
                                                           {"Trades", true},
                                                           {"Won", true},
                                                           {"R", true},
                                                           {"Money", true},
                                                           {"Usual moves", true},
                                                           {"Rank", true}}};
std::string DrillCell(const DrillResult& result, std::size_t column);

// Minutes and seconds: "1:35".
std::string ClockText(int seconds);

}  // namespace velumar
