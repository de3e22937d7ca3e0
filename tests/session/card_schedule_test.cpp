#include "session/card_schedule.h"

#include <random>

#include "session/card_play.h"
#include "session/sim_session.h"
#include "support/matchers.h"

namespace velumar {
namespace {

// Bars 0 to 3; the decision fills at the close of bar 1.
TEST(CardOutcome, IsHeldToTheLastBarOrToItsStop) {
  using Side = LedgerCardAnswer::Decision;
  SimSession session;
  session.BarOpen = {10, 10, 12, 6};
  session.BarHigh = {99, 99, 13, 9};
  session.BarLow = {1, 1, 11, 5};
  session.BarClose = {10, 10, 12, 8};
  struct Case {
    Side side;
    std::optional<double> stop;
    int last;
    std::optional<double> points;
    std::optional<double> r;
    std::optional<int> stopped;
  };
  const Case cases[] = {
      {Side::kNothing, {}, 3, {}, {}, {}},
      {Side::kLong, {}, 3, -2, {}, {}},
      {Side::kLong, 4, 3, -2, -1.0 / 3, {}},
      {Side::kLong, 5, 3, -5, -1, 3},        // reached to the tick
      {Side::kLong, 7, 3, -4, -4.0 / 3, 3},  // the bar opens beyond it
      {Side::kLong, 7, 2, 2, 2.0 / 3, {}},
      {Side::kShort, 13, 3, -3, -1, 2},
      {Side::kShort, 13.5, 3, 2, 2 / 3.5, {}},
      {Side::kShort, 11, 2, -2, -2, 2},
  };
  for (const Case& row : cases) {
    const CardOutcome outcome = OutcomeOf(session, {row.side, row.stop}, 1, row.last);
    const auto name = "stop " + std::to_string(row.stop.value_or(0));
    EXPECT_EQ(outcome.price, 10);
    EXPECT_EQ(outcome.points, row.points) << name;
    EXPECT_EQ(outcome.r.has_value(), row.r.has_value()) << name;
    EXPECT_NEAR(outcome.r.value_or(0), row.r.value_or(0), 1e-9) << name;
    EXPECT_EQ(outcome.stopped, row.stopped) << name;
  }
}

// First in, first out, and no more than the offset's quantity.
TEST(TradePlans, AnOffsetClosesTheEntriesOfItsSideInTheirOrder) {
  for (const bool is_long : {true, false}) {
    TradePlans plans;
    for (const double quantity : {2.0, 3.0, 0.7}) {
      plans.Add({.is_long = is_long, .quantity = quantity, .held = quantity});
    }
    plans.Add({.is_long = !is_long, .quantity = 1, .held = 1});
    plans.Add({.is_long = is_long, .entry = false, .quantity = 3});
    std::vector<double> held;
    for (const PlannedOrder& order : plans.Orders()) held.push_back(order.held);
    EXPECT_THAT(held, testing::ElementsAre(2, 0.7, 1, 0)) << "the offset is the last order";
    const double tick = is_long ? 0.01 : -0.01;
    for (const int ticks : {-1, 0, 1}) {
      const double price = 100 + ticks * tick;
      EXPECT_EQ(FitsSide({.order = {}, .stop = price}, is_long, 100), ticks < 0);
      EXPECT_EQ(FitsSide({.order = {}, .target = price}, is_long, 100), ticks > 0);
    }
  }
}

TEST(CardSchedule, AnAnswerMovesTheCardAlongTheDays) {
  using enum LedgerCardAnswer::Verdict;
  struct Row {
    int step;
    LedgerCardAnswer::Verdict verdict;
    std::optional<double> r;
    int next;
    std::int32_t due;
  };
  // Answered on 28 December 2007, the day it was due.
  for (const Row& row : std::initializer_list<Row>{{0, kGood, 1.2, 1, 20071231},
                                                   {1, kGood, 0.0, 2, 20080104},
                                                   {2, kGood, {}, 3, 20080118},
                                                   {4, kGood, 3.0, 4, 20080226},
                                                   {2, kGood, -1.0, 2, 20080104},
                                                   {2, kFair, 0.5, 2, 20080104},
                                                   {2, kFair, -0.1, 1, 20071231},
                                                   {0, kFair, -1.0, 0, 20071229},
                                                   {4, kPoor, 2.0, 0, 20071229}}) {
    const LedgerCard card{.step = row.step, .due = 20071228};
    const CardTurn turn = NextTurn(card, row.verdict, row.r, 20071228);
    EXPECT_EQ(std::pair(turn.step, turn.due), std::pair(row.next, row.due)) << row.step;
  }
  const CardTurn early = NextTurn({.step = 2, .due = 20071229}, kGood, 1.0, 20071228);
  EXPECT_EQ(std::pair(early.step, early.due), std::pair(2, 20080104)) << "not up before its day";
}

// As few neighbours of one security as any order has, and the longest waiting first.
TEST(CardSchedule, DueCardsOfOneSecurityDoNotFollowEachOther) {
  std::mt19937 random(5);
  for (int round = 0; round < 300; ++round) {
    std::vector<LedgerCard> cards;
    std::map<std::string, std::ptrdiff_t> counts;
    for (std::size_t i = random() % 9; i > 0; --i) {
      const std::string symbol(1, static_cast<char>('A' + random() % 3));
      cards.push_back({.symbol = symbol, .due = 20070101 + static_cast<int>(random() % 4)});
      if (cards.back().due <= 20070103) ++counts[symbol];
    }
    const std::vector<std::size_t> turns = DueCards(cards, 20070103, "A");
    std::ptrdiff_t neighbours = 0;
    std::string before = "A";
    for (const std::size_t i : turns) {
      neighbours += cards[i].symbol == before ? 1 : 0;
      before = cards[i].symbol;
    }
    std::ptrdiff_t fewest = 0;
    for (const auto& [symbol, count] : counts) {
      const std::ptrdiff_t others = std::ssize(turns) - count;
      fewest = std::max(fewest, count - others - (symbol == "A" ? 0 : 1));
    }
    EXPECT_EQ(neighbours, fewest) << round;
    EXPECT_EQ(std::set(turns.begin(), turns.end()).size(), turns.size());
  }
  const std::vector<LedgerCard> cards{{.symbol = "A", .due = 20070103},
                                      {.symbol = "A", .due = 20070101},
                                      {.symbol = "B", .due = 20070102},
                                      {.symbol = "C", .due = 20070104}};
  EXPECT_EQ(DueCards(cards, 20070103), (std::vector<std::size_t>{1, 2, 0}));
}

}  // namespace
}  // namespace velumar
