#pragma once

#include <cmath>
#include <cstdint>
#include <numbers>
#include <string>

#include "progress/played.h"
#include "progress/random_source.h"

namespace velumar {

inline PlayedTrade Traded(int session, int entry, int exit, double money, double costs = 0) {
  PlayedTrade trade;
  trade.session = session;
  trade.entry_bar = entry;
  trade.exit_bar = exit;
  trade.quantity = 2;
  trade.money_per_point = 1;
  trade.money = money;
  trade.costs = costs;
  return trade;
}

inline double NormalDraw(RandomSource& random) {
  const double radius = std::sqrt(-2 * std::log(1 - random.Share()));
  return radius * std::cos(2 * std::numbers::pi * random.Share());
}

// How the results of trades are spread, in R around 0: like Student's t with four degrees of
// freedom, many small losses with a few large wins, or the reverse.
enum class Spread : std::uint8_t { kHeavyTails, kLetsRun, kTakesEarly };

inline double SpreadDraw(Spread spread, RandomSource& random) {
  constexpr double kOften = 0.6;
  if (spread == Spread::kHeavyTails) {
    const double halves = -std::log(1 - random.Share()) - std::log(1 - random.Share());
    return NormalDraw(random) / std::sqrt(halves / 2);
  }
  const double sign = spread == Spread::kLetsRun ? 1 : -1;
  if (random.Share() < kOften) return sign * (-1 + 0.15 * NormalDraw(random));
  // The mean of the rest makes that of all 0.
  const double rest = std::exp(0.7 * NormalDraw(random) - 0.245);
  return sign * kOften / (1 - kOften) * rest;
}

// A ledger of results without bars: the true expectancy in R is `edge`, that in money 100 x edge
// - 5. Sessions have 2 to 12 trades, and are better or worse as a whole.
inline Played SimulateResults(int sessions, Spread spread, double edge, RandomSource& random) {
  constexpr double kRisk = 100;
  constexpr double kCosts = 5;
  constexpr double kMood = 0.3;
  Played played;
  for (int i = 0; i < sessions; ++i) {
    played.sessions.push_back({.scope = LedgerScope::Session(i + 1),
                               .interval = kAbsent,
                               .starting_money = 100000,
                               .first_day = 20260105,
                               .last_day = 20260130,
                               .played_at = {},
                               .closes = {}});
    const double mood = kMood * NormalDraw(random);
    for (int left = 2 + static_cast<int>(random.Below(11)); left > 0; --left) {
      PlayedTrade trade;
      trade.session = i;
      trade.risk = kRisk * (0.5 + random.Share());
      trade.costs = kCosts;
      trade.money = trade.risk * (edge + mood + SpreadDraw(spread, random));
      played.trades.push_back(trade);
    }
  }
  return played;
}

// A trader on random walks. One who is skilled takes the best of that many bars.
struct SimulatedTrader {
  int sessions = 12;
  int bars = 120;
  int trades = 6;  // in a session
  int setups = 1;
  int skilled_setup = kAbsent;
  int skill = 1;
  bool one_at_a_time = false;  // entries leave room for one another
  double drift = 0;            // of the walks, per bar
  int longest = 12;            // bars that a trade is held
  double target = 0;           // points at which it is closed earlier, 0: none
  double stop = 0;
};

// A trade between the bars `first` and `end` of a session, the best of `looks`.
inline PlayedTrade SimulateTrade(const SimulatedTrader& trader, const PlayedSession& session,
                                 int first, int end, int looks, RandomSource& random) {
  PlayedTrade trade;
  trade.is_long = random.Below(2) == 0;
  const int most = 1 + static_cast<int>(random.Below(static_cast<std::uint32_t>(trader.longest)));
  trade.quantity = 1 + random.Below(3);
  trade.money_per_point = 10;
  for (int look = 0; look < looks; ++look) {
    const int entry =
        first + static_cast<int>(random.Below(static_cast<std::uint32_t>(end - first - most)));
    const auto points_after = [&](int bars) {
      return (trade.is_long ? 1 : -1) * (static_cast<double>(session.closes.at(entry + bars)) -
                                         static_cast<double>(session.closes.at(entry)));
    };
    int bars = trader.target > 0 ? 1 : most;
    while (bars < most && points_after(bars) < trader.target && points_after(bars) > -trader.stop) {
      ++bars;
    }
    const double money = points_after(bars) * trade.quantity * trade.money_per_point;
    if (look > 0 && money <= trade.money) continue;
    trade.money = money;
    trade.entry_bar = session.first_bar + entry;
    trade.exit_bar = trade.entry_bar + bars;
    trade.entry_price = session.closes.at(entry);
    trade.exit_price = session.closes.at(entry + bars);
  }
  trade.costs = 3;
  trade.risk = random.Below(3) == 0 ? 0 : 50;
  return trade;
}

inline Played SimulateTrading(const SimulatedTrader& trader, RandomSource& random) {
  Played played;
  for (int i = 0; i < trader.setups; ++i) played.setups.push_back("setup " + std::to_string(i + 1));
  for (int i = 0; i < trader.sessions; ++i) {
    PlayedSession session{.scope = LedgerScope::Session(i + 1),
                          .interval = 5,
                          .blind = i % 2 == 0,
                          .starting_money = 20000,
                          .first_day = 20260105,
                          .last_day = 20260112,
                          .played_at = {},
                          .first_bar = 50,
                          .closes = {}};
    double price = 100;
    for (int bar = 0; bar < trader.bars; ++bar) {
      price += trader.drift + NormalDraw(random);
      session.closes.push_back(static_cast<float>(std::round(price * 100) / 100));
    }
    for (int k = 0; k < trader.trades; ++k) {
      const int part = trader.bars / trader.trades;
      const int first = trader.one_at_a_time ? k * part : 0;
      const int end = trader.one_at_a_time ? first + part : trader.bars;
      const auto setup = static_cast<std::int32_t>(random.Below(trader.setups));
      const int looks = setup == trader.skilled_setup ? trader.skill : 1;
      PlayedTrade trade = SimulateTrade(trader, session, first, end, looks, random);
      trade.session = i;
      trade.setup = setup;
      trade.entry_day = 20260105 + k;
      played.trades.push_back(trade);
    }
    played.sessions.push_back(std::move(session));
  }
  return played;
}

}  // namespace velumar
