#include "progress/drill_results.h"

#include <algorithm>
#include <tuple>
#include <unordered_map>
#include <utility>

#include "progress/usual_move.h"
#include "results/figure_texts.h"

namespace velumar {

namespace {

void Add(DrillFigures& figures, const PlayedTrade& trade, const PlayedSession& session) {
  ++figures.trades;
  figures.wins += trade.Net() > 0 ? 1 : 0;
  figures.money += trade.Net();
  if (const auto multiple = trade.R()) {
    figures.multiples += *multiple;
    ++figures.with_risk;
  }
  const double usual = UsualMoveOf(session);
  const double rise = trade.exit_price - trade.entry_price;
  if (session.closes.empty()) {
    figures.moves.reset();
  } else if (figures.moves && usual > 0) {
    *figures.moves += (trade.is_long ? rise : -rise) / usual;
  }
}

// Only these compare.
auto KindOf(const LedgerDrill& drill) {
  return std::tuple(drill.charts, drill.bars, drill.seconds);
}

bool HasRank(const DrillResult& result) {
  return result.drill.finished && result.figures.moves.has_value();
}

void Rank(std::vector<DrillResult>& results) {
  for (DrillResult& result : results) {
    if (!HasRank(result)) continue;
    result.rank = 1;
    for (const DrillResult& other : results) {
      if (!HasRank(other) || KindOf(other.drill) != KindOf(result.drill)) continue;
      ++result.ranked;
      if (*other.figures.moves > *result.figures.moves) ++result.rank;
    }
  }
}

std::string ChartsText(const LedgerDrill& drill) {
  if (drill.finished) return std::to_string(drill.charts);
  return std::to_string(drill.sessions.size()) + " of " + std::to_string(drill.charts) +
         ", not finished";
}

std::string RoundedText(const std::optional<double>& number) {
  return number ? QuantityText(*number) : kNoFigure;
}

}  // namespace

DrillFigures FiguresOfSessions(const Played& played, const std::vector<int>& sessions) {
  LedgerDrill one;
  one.sessions = sessions;
  return DrillResults({std::move(one)}, played).front().figures;
}

std::string DrillFiguresText(const DrillFigures& figures) {
  if (figures.trades == 0) return "no trades";
  std::string text = std::to_string(figures.trades) +
                     (figures.trades == 1 ? " trade, " : " trades, ") +
                     PercentText(figures.WinRate()) + " won, ";
  if (const auto multiples = figures.R()) text += QuantityText(*multiples) + " R, ";
  text += MoneyText(figures.money) + " in money";
  if (figures.moves) text += ", " + QuantityText(*figures.moves) + " usual moves";
  return text;
}

std::string DrillResult::RankText() const {
  return rank == 0 ? kNoFigure : std::to_string(rank) + " of " + std::to_string(ranked);
}

std::string DrillCell(const DrillResult& result, std::size_t column) {
  const LedgerDrill& drill = result.drill;
  const DrillFigures& figures = result.figures;
  const std::array<std::string, kDrillColumns.size()> cells{
      ChartsText(drill),
      std::to_string(drill.bars),
      drill.seconds == 0 ? "none" : ClockText(drill.seconds),
      std::to_string(figures.trades),
      PercentText(figures.WinRate()),
      RoundedText(figures.R()),
      MoneyText(figures.money),
      RoundedText(figures.moves),
      result.RankText()};
  return cells.at(column);
}

std::vector<DrillResult> DrillResults(std::vector<LedgerDrill> drills, const Played& played) {
  std::vector<DrillResult> results;
  std::unordered_map<int, std::size_t> drill_of_session;
  for (LedgerDrill& drill : drills) {
    for (const int session : drill.sessions) drill_of_session[session] = results.size();
    results.push_back({.drill = std::move(drill), .figures = {}});
  }
  for (const PlayedTrade& trade : played.trades) {
    const PlayedSession& session = played.SessionAt(trade.session);
    if (trade.look_ahead || session.scope.kind != LedgerScope::Kind::kSession) continue;
    const auto found = drill_of_session.find(session.scope.number);
    if (found != drill_of_session.end()) Add(results[found->second].figures, trade, session);
  }
  Rank(results);
  return results;
}

std::string ClockText(int seconds) {
  constexpr int kMinute = 60;
  const int rest = seconds % kMinute;
  return std::to_string(seconds / kMinute) + (rest < 10 ? ":0" : ":") + std::to_string(rest);
}

}  // namespace velumar
