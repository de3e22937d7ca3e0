#include "progress/drill_results.h"

#include <cmath>

namespace velumar {
namespace {

// Sessions 1 to `count` whose closes change by 1 and 7 points in turn: 5 are usual.
Played Sessions(int count) {
  Played played;
  for (int i = 1; i <= count; ++i) {
    PlayedSession& session = played.sessions.emplace_back();
    session.scope = LedgerScope::Session(i);
    session.closes = {10, 11, 18, 19, 26};
  }
  return played;
}

void Add(Played& played, int session, bool is_long, double points, double risk = 0,
         bool look_ahead = false) {
  PlayedTrade trade;
  trade.session = session - 1;
  trade.is_long = is_long;
  trade.look_ahead = look_ahead;
  trade.entry_price = 20;
  trade.exit_price = is_long ? 20 + points : 20 - points;
  trade.money = 3 * points;
  trade.costs = 1;
  trade.risk = risk;
  played.trades.push_back(trade);
}

TEST(DrillResults, AreThoseOfTheTradesAndRankedAmongTheirLikes) {
  Played played = Sessions(6);
  Add(played, 1, true, 10, 15);
  Add(played, 2, false, -5);
  Add(played, 2, true, 100, 15, true);
  Add(played, 3, false, 10);
  Add(played, 4, true, 500);
  Add(played, 5, true, 900);
  Add(played, 6, true, 0.1);
  Add(played, 5, true, 1.0 / 3);
  played.sessions[5].scope = LedgerScope::Run(6);
  const auto drill = [](std::vector<int> sessions, int bars = 40, int seconds = 0) {
    LedgerDrill of{.charts = 2, .bars = bars, .seconds = seconds, .finished = true};
    of.sessions = std::move(sessions);
    return of;
  };
  LedgerDrill stopped = drill({5});
  stopped.finished = false;
  const std::vector<DrillResult> results = DrillResults(
      {drill({1, 2}), drill({3, 6}), drill({4}, 41), stopped, drill({}), drill({}, 40, 90)},
      played);
  const DrillFigures& figures = results.at(0).figures;
  EXPECT_EQ(figures.trades, 2) << "not the one that knew later bars";
  EXPECT_EQ(figures.wins, 1);
  EXPECT_EQ(figures.money, 3 * 10 - 3 * 5 - 2);
  EXPECT_EQ(figures.R(), 2);
  EXPECT_NEAR(figures.moves.value(), 1, 1e-9);
  EXPECT_EQ(DrillFiguresText(figures), "2 trades, 50.00 % won, 2 R, 13.00 in money, 1 usual moves");
  EXPECT_EQ(results[1].figures.trades, 1) << "a run is no session";
  const auto ranks = [&](std::size_t i) { return results.at(i).RankText(); };
  EXPECT_EQ(ranks(0) + ", " + ranks(1) + ", " + ranks(4), "2 of 3, 1 of 3, 3 of 3");
  EXPECT_EQ(ranks(2) + ", " + ranks(3) + ", " + ranks(5), "1 of 1, -, 1 of 1");
  for (const auto& [seconds, text] :
       {std::pair(0, "0:00"), {9, "0:09"}, {10, "0:10"}, {59, "0:59"}, {60, "1:00"}}) {
    EXPECT_EQ(ClockText(seconds), text);
  }
  EXPECT_EQ(results[3].figures.trades, 2);
  EXPECT_EQ(results[3].figures.wins, 1) << "what only pays its costs wins nothing";
  played.sessions[0].closes.clear();
  EXPECT_EQ(DrillResults({drill({1})}, played).at(0).RankText(), "-");
}

}  // namespace
}  // namespace velumar
