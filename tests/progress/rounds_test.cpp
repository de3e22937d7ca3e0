#include <atomic>
#include <cmath>
#include <numeric>
#include <stdexcept>

#include "progress/progress_figures.h"
#include "progress/random_traders.h"
#include "progress/ruin.h"
#include "support/simulated_traders.h"

namespace velumar {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::Ge;
using testing::Le;

Played TradersOf(SimulatedTrader trader, std::uint64_t seed) {
  RandomSource random(seed);
  return SimulateTrading(trader, random);
}

std::vector<TradeGroup> GroupsOf(const Played& played) {
  const Selection all = Select(played, {});
  std::vector<TradeGroup> groups = GroupsBySetup(played, all);
  groups.insert(groups.begin(), {"all", all});
  return groups;
}

TEST(Rounds, GiveTheSameOnAnyNumberOfThreads) {
  const Played played = TradersOf({.setups = 2}, 3);
  const Selection all = Select(played, {});
  const EquityCurve curve = ChainEquity(played, all);
  const auto compute = [&](int threads, std::uint64_t seed) {
    const RoundOptions options{.count = 1500, .seed = seed, .threads = threads};
    std::vector<double> numbers;
    for (const ProgressFigure& figure : ComputeFigures(played, all, curve, options).figures) {
      numbers.insert(numbers.end(), {figure.interval.low, figure.interval.high});
    }
    for (const SkillOrLuck& skill : CompareWithRandomTraders(played, GroupsOf(played), options)) {
      numbers.insert(numbers.end(), skill.random_results.begin(), skill.random_results.end());
    }
    const auto risk = ComputeRiskAhead(played, all, options);
    numbers.insert(numbers.end(), {risk->size, risk->falls[0]});
    return numbers;
  };
  EXPECT_EQ(compute(1, 9), compute(3, 9));
  EXPECT_NE(compute(1, 9), compute(1, 8));
}

TEST(Rounds, EndWithTheErrorOfABlockAndOfTheCaller) {
  std::vector<int> rounds(2000);
  const auto count = [&](int first, int end, RandomSource&) {
    for (int i = first; i < end; ++i) ++rounds[static_cast<std::size_t>(i)];
  };
  double last = 0;
  RunRounds({.count = 2000, .threads = 1, .progress = [&](double share) { last = share; }}, count);
  EXPECT_EQ(rounds, std::vector<int>(2000, 1));
  EXPECT_EQ(last, 1);
  const auto fails = [](int first, int, RandomSource&) {
    if (first > 0) throw std::runtime_error("block");
  };
  EXPECT_THROW(RunRounds({.count = 2000, .threads = 2}, fails), std::runtime_error);
  std::atomic<int> blocks = 0;
  const auto counted = [&](int, int, RandomSource&) { ++blocks; };
  const auto cancel = [](double) { throw std::logic_error("cancel"); };
  EXPECT_THROW(RunRounds({.count = 1 << 20, .threads = 1, .progress = cancel}, counted),
               std::logic_error);
  EXPECT_EQ(blocks, 1);
}

// Trades of a session are alike, which four sessions are too few to show. With more sessions,
// bench/progress/validation.cpp measures the intervals, and how often luck passes as skill.
TEST(Intervals, OfFourSessionsHoldTheTruthNearlyAsOftenAsTheySay) {
  int held = 0;
  for (std::uint64_t seed = 1; seed <= 400; ++seed) {
    RandomSource random(seed, 4);
    const Played played = SimulateResults(4, Spread::kLetsRun, 0.2, random);
    const Selection all = Select(played, {});
    const EquityCurve curve = ChainEquity(played, all);
    const auto interval =
        ComputeFigures(played, all, curve, {.count = 300, .threads = 1}).figures.at(2).interval;
    held += interval.low <= 15 && interval.high >= 15 ? 1 : 0;
  }
  EXPECT_THAT(held, AllOf(Ge(330), Le(394)));
}

TEST(RandomTraders, FindTheSkillInOneSetupAndNothingElse) {
  const Played played = TradersOf({.sessions = 60, .setups = 4, .skilled_setup = 1, .skill = 3}, 1);
  const auto skills = CompareWithRandomTraders(played, GroupsOf(played), {.count = 2000});
  std::vector<bool> found;
  for (const SkillOrLuck& skill : skills) found.push_back(skill.IsSkill());
  EXPECT_THAT(found, ElementsAre(true, false, true, false, false));
  EXPECT_EQ(SkillSentence(skills[2], 5),
            "5 of 10,000 random traders did as well (5 groups looked at): more than luck.");
  SkillOrLuck shown;
  shown.trades = 50;
  for (const auto& [share, words] : {std::pair(0.5, "50 of 100 "),
                                     {0.01, "1 of 100 "},
                                     {0.0099, "10 of 1,000 "},
                                     {0.0001, "1 of 10,000 "},
                                     {1e-9, "1 of 10,000 "}}) {
    shown.share = share;
    EXPECT_THAT(SkillSentence(shown, 1), testing::StartsWith(words));
  }
}

TEST(RandomTraders, CompareLikeWithLike) {
  Played played;
  PlayedSession& session = played.sessions.emplace_back();
  session.first_bar = 5;
  session.closes = {1, 2, 4, 8};
  const auto add = [&](int entry, int exit, bool is_long) {
    PlayedTrade& trade = played.trades.emplace_back(Traded(0, entry, exit, 0));
    trade.is_long = is_long;
    trade.quantity = 3;
    trade.money_per_point = 10;
  };
  add(6, 8, true);    // the better of two starts: 30 x 3 or 30 x 6
  add(5, 7, false);   // the better of two again, on the other side
  add(8, 7, true);    // stepped back
  add(7, 99, false);  // not within the closes
  const auto skills =
      CompareWithRandomTraders(played, {{"first", {0}}, {"all", {0, 1, 2, 3}}}, {.count = 4000});
  EXPECT_EQ(skills[0].result, 180);
  EXPECT_NEAR(skills[0].share, 0.5, 0.03);
  EXPECT_EQ(skills[1].result, 90);
  EXPECT_NEAR(skills[1].share, 0.25, 0.03);
  EXPECT_EQ(skills[1].adjusted_share, 2 * skills[1].share);
  EXPECT_EQ(skills[0].adjusted_share, std::max(skills[0].share, skills[1].adjusted_share));
  EXPECT_EQ(skills[1].trades, 2);
  EXPECT_EQ(skills[1].left_out, 2);
  EXPECT_EQ(skills[1].buy_and_hold, 30 * 7);
  const double usual_move = std::sqrt((1 + 4 + 16) / 3.0);
  EXPECT_DOUBLE_EQ(skills[0].compared, 6 / usual_move);
  EXPECT_DOUBLE_EQ(skills[1].random_results.front(), -3 / usual_move);
  const Histogram histogram = HistogramOf(skills[0].random_results, 2);
  EXPECT_EQ(histogram.counts[0] + histogram.counts[1], 4000);
  EXPECT_DOUBLE_EQ(histogram.high, 6 / usual_move);
  EXPECT_EQ(SkillSentence(skills[0], 2), "Too few trades to compare with random traders: 1.");
  add(6, 6, true);
  EXPECT_EQ(CompareWithRandomTraders(played, {{"at once", {4}}}, {.count = 10})[0].trades, 1);
}

// Trades that lose or win a tenth of the account, as a coin falls.
TEST(RiskAhead, OfACoin) {
  Played played;
  for (int i = 0; i < 20; ++i) {
    played.sessions.push_back({});
    played.sessions.back().starting_money = 1000;
    PlayedTrade& trade = played.trades.emplace_back(Traded(i, 0, 0, i % 2 == 0 ? 100 : -100));
    trade.risk = 100;
  }
  const auto risk = ComputeRiskAhead(played, Select(played, {}), {});
  // A hundred throws without a loss from the peak of a tenth would be a hundred wins.
  EXPECT_EQ(risk->falls[0], 1);
  EXPECT_THAT(risk->falls[2], AllOf(Ge(0.97), Le(1)));
  // The chance of each number of wins while the account has not been halved, throw by throw.
  std::vector<double> chances(kTradesAhead + 1);
  chances[0] = 1;
  for (int throws = 1; throws <= kTradesAhead; ++throws) {
    for (int wins = throws; wins >= 0; --wins) {
      chances[wins] = (chances[wins] + (wins > 0 ? chances[wins - 1] : 0)) / 2;
      if (std::pow(1.1, wins) * std::pow(0.9, throws - wins) <= kRuinShare) chances[wins] = 0;
    }
  }
  EXPECT_NEAR(risk->ruin, 1 - std::accumulate(chances.begin(), chances.end(), 0.0), 0.02);
  EXPECT_NEAR(*risk->risk_per_trade, 0.1 * risk->size, 1e-12);
  // At that size the risk is as promised.
  for (PlayedTrade& trade : played.trades) trade.money *= risk->size;
  const auto smaller = ComputeRiskAhead(played, Select(played, {}), {.seed = 2});
  EXPECT_NEAR(smaller->falls[2], kAcceptedRisk, 0.004);
  EXPECT_NEAR(smaller->size, 1, 0.05);
  EXPECT_FALSE(ComputeRiskAhead(played, Selection{0, 1, 2}, {}));
}

// One trade in two hundred loses just half, the others nothing: one such loss is ruin.
TEST(RiskAhead, HalfTheAccountIsRuinAndAnEmptyOneTradesNoMore) {
  Played played;
  for (int i = 0; i < 200; ++i) {
    played.sessions.emplace_back().starting_money = 1000;
    played.trades.emplace_back().session = i;
  }
  played.trades[7].money = -500;
  EXPECT_NEAR(ComputeRiskAhead(played, Select(played, {}), {})->ruin,
              1 - std::pow(1 - 1 / 200.0, kTradesAhead), 0.02);
  PlayedTrade& later = played.trades.emplace_back(played.trades.back());
  played.trades[199].money = -1000;
  later.money = 50;
  EXPECT_EQ(ComputeRiskAhead(played, Select(played, {}), {})->trades, 200);
}

}  // namespace
}  // namespace velumar
