#include <cstring>
#include <utility>

#include "base/number_text.h"
#include "support/order_fixture.h"
#include "trading/status_texts.h"

namespace velumar {
namespace {

using OrdersTest = OrderFixture;

TEST_F(OrdersTest, FuturesSidesAreIndependentAndAverage) {
  Account(20000, 5000, "500", 2000000);
  AddBar(100.5F);
  session.NewestShownBar = 9;
  EXPECT_EQ(Order(&OrderDesk::Long, "2"), OrderResult::kDone);
  EXPECT_EQ(Ask("select Quantity, Vat, BarIndex, NewestShown From Details"),
            (std::vector<Row>{{2.0, 70.0, 1.0, 9.0}}));
  EXPECT_EQ(session.UsedMargin, 41070);
  EXPECT_EQ(Newest("Position, ActTime, LAmount, Commission, Portfolio"),
            (Row{"Long", "16:30:00", 2.0, 1000.0, 2000000.0}));
  AddBar(103.5F);
  Order(&OrderDesk::Long, "1");
  EXPECT_EQ(session.LAvgPrice, 101.5F);
  AddBar(104.5F);
  Order(&OrderDesk::Short, "2");
  EXPECT_EQ(session.UsedMargin, 61605 + 41070);
  EXPECT_EQ(Newest("LAccum, SAccum"), (Row{0.0, 2.0})) << "a row speaks only for its own side";
  AddBar(101.5F);
  EXPECT_EQ(session.SUnrealisedMoney, 30000);
  EXPECT_EQ(session.Portfolio, 2030000);
  Order(&OrderDesk::OffsetShort, "2");
  EXPECT_EQ(session.SRealised, 6);
  AddBar(102.5F);
  EXPECT_EQ(Order(&OrderDesk::OffsetLong, "1"), OrderResult::kDone);
  EXPECT_EQ(session.UsedMargin, 41070);
  EXPECT_EQ(session.LRealised, 1);
  EXPECT_EQ(session.BalancePoint, 7) << "the last offsets of both sides";
  EXPECT_EQ(session.Balance, 2035000);
  EXPECT_EQ(session.LUnrealisedMoney, 10000);
  EXPECT_EQ(session.Portfolio, 2045000);
  EXPECT_EQ(Newest("LOffset, LUnrealised, Portfolio"), (Row{1.0, 2.0, 2035000.0}));
  EXPECT_EQ(session.Orders.size(), 5U);
  EXPECT_EQ(session.Orders.back(), (OrderMark{5, 102.5F, true, false})) << "the charts mark it";
  EXPECT_EQ(charts.asked.size(), 5U);
  AddBar(100);
  Order(&OrderDesk::Short, "2");
  AddBar(101);
  Order(&OrderDesk::Short, "1");
  EXPECT_EQ(session.SAvgPrice, 100.33F);
  AddBar(101.5F);
  Order(&OrderDesk::Short, "1");
  EXPECT_EQ(Newest("SUnrealised"), (Row{-3.51})) << "to two decimals, as its average";
  StartAccount(session, run);
  EXPECT_EQ(session.UsedMargin, 0);
  for (const PlannedOrder& order : session.Plans.Orders()) EXPECT_EQ(order.held, 0);
  ShowStatus(session, run, outside.locale);
  EXPECT_EQ(run.status.positions, "( L=0 Avg=0.0 )  ( S=0 Avg= 0.0 ) ");
}

TEST_F(OrdersTest, AStockEntryAndItsOffset) {
  StockMarket();
  Account(100, 1, "0.25", 2000000);
  AddBar(12.5F);
  EXPECT_EQ(Order(&OrderDesk::Long, "1,000"), OrderResult::kDone);
  EXPECT_EQ(session.UsedMargin, 12533.4375F);
  AddBar(12.5004F);
  EXPECT_EQ(session.Portfolio, 2000000.375F);
  Order(&OrderDesk::Long, "0");
  EXPECT_EQ(session.Portfolio, 2000000) << "an order rounds it to whole money";
  AddBar(13);
  EXPECT_EQ(Order(&OrderDesk::OffsetLong, "1000"), OrderResult::kDone);
  EXPECT_NEAR(session.UsedMargin, -501.34, 0.01);
  EXPECT_EQ(session.LAccum, 0);
  EXPECT_EQ(session.LAvgPrice, 12.5F) << "the old average stays until the next entry";
}

TEST_F(OrdersTest, WhatTheMoneyTestsRefuseChangesNothing) {
  Account(20000, 1000, "500", 50000);
  const std::tuple<float, const char*, const char*, OrderResult> cases[] = {
      {0, "3", "500", OrderResult::kRefused},      // passes one contract's test, fails the sum
      {40000, "1", "500", OrderResult::kRefused},  // one contract's margin is not there
      {8930, "2", "500", OrderResult::kDone},      // 8,930 + 41,070 is exactly all there is
      {8931, "2", "500", OrderResult::kRefused},
      {30000, "1", "0", OrderResult::kDone}};  // in both tests exactly all there is
  for (const auto& [used, quantity, commission, result] : cases) {
    session.UsedMargin = used;
    run.commission = commission;
    const std::size_t rows = Rows();
    EXPECT_EQ(Order(&OrderDesk::Long, quantity), result) << used;
    if (result == OrderResult::kDone) continue;
    EXPECT_EQ(run.refusal, "not enuogh money");
    EXPECT_EQ(session.UsedMargin, used);
    EXPECT_EQ(Rows(), rows);
  }
}

// What a trader has bought he can close, whatever the binary form of the decimals.
TEST_F(OrdersTest, OffsetsCountInTheDecimalsThatTheTraderReads) {
  const std::tuple<std::vector<const char*>, const char*, float> cases[] = {
      {{"0.3"}, "0.1", 0.2F},
      {{"1,000.1"}, "0.1", 1000},
      {{"16777217"}, "16777217", 0},
      {{"0.3", "0.3", "0.3"}, "0.9", 0},  // the sum of floats is 0.90000004
      {{"16,000,000"}, "15,999,999", 1},  // reads alike at seven digits
      {{"0.0000001"}, "0.00000004", 0.00000006F}};
  for (const auto& [bought, closed, left] : cases) {
    for (const bool is_long : {true, false}) {
      Account(0, 1000, "0", 3e9F);
      session.LAccum = session.SAccum = session.UsedMargin = 0;
      float& held = is_long ? session.LAccum : session.SAccum;
      AddBar(100);
      for (const char* quantity : bought) {
        Order(is_long ? &OrderDesk::Long : &OrderDesk::Short, quantity);
      }
      AddBar(is_long ? 102 : 98);
      const auto offset = is_long ? &OrderDesk::OffsetLong : &OrderDesk::OffsetShort;
      EXPECT_EQ(Order(offset, closed), OrderResult::kDone) << closed;
      EXPECT_EQ(held, left) << closed;
      EXPECT_EQ(std::pair(session.LRealisedMoney, session.SRealisedMoney), std::pair(0.0F, 0.0F));
      EXPECT_EQ(is_long ? session.LRealised : session.SRealised,
                ToSingle(PatternText(2 * ToSingle(closed).value(), kTwoDecimalsPattern)));
    }
  }
}

TEST_F(OrdersTest, AnOffsetOfMoreThanIsHeldDropsThePositionAndSaysSo) {
  Account(20000, 1000, "500", 2000000);
  Order(&OrderDesk::Long, "1");
  const float used = session.UsedMargin;
  EXPECT_EQ(Order(&OrderDesk::Long, "0"), OrderResult::kDone) << "a row, but no mark";
  EXPECT_EQ(Order(&OrderDesk::OffsetLong, "5"), OrderResult::kTooMuch);
  EXPECT_EQ(session.Orders, (std::vector<OrderMark>{{0, 100, true, true}, {0, 100, true, false}}));
  EXPECT_EQ(run.refusal, "5 is more than the 1 held: position dropped, no P/L booked");
  EXPECT_EQ(run.status.positions, "( L=0 Avg=0.0 )  ( S=0 Avg= 0.0 ) ");
  EXPECT_EQ(session.LAccum, 0);
  EXPECT_EQ(session.UsedMargin, used);
  EXPECT_EQ(session.Balance, 2000000);
  EXPECT_EQ(Rows(), 2U);
  // Noted after the newest row, at the same bar.
  EXPECT_EQ(Ask("select Held, Quantity From Wiped, MyPortfolio where Place = MyPortfolio.rowid "
                "and BarDate = ActDate and BarTime = ActTime and Wiped.MarketPrice = "
                "MyPortfolio.MarketPrice and Wiped.Position = 'Offset Long'"),
            (std::vector<Row>{{1.0, 5.0}}));
}

TEST_F(OrdersTest, OrdersWithoutEffectSayWhy) {
  Account(20000, 1000, "500", 2000000);
  EXPECT_EQ(Order(&OrderDesk::OffsetShort, "abc"), OrderResult::kNothingHeld);
  EXPECT_EQ(run.refusal, "nothing to offset: no short position is held");
  EXPECT_EQ(Order(&OrderDesk::Long, "-0"), OrderResult::kDone);
  EXPECT_EQ(run.refusal, "the quantity is 0: nothing was opened");
  const auto refused = [&] {
    EXPECT_EQ(Order(&OrderDesk::Long, "1"), OrderResult::kInvalid);
    return run.refusal;
  };
  session.Symbol = "XYZ";
  EXPECT_THAT(refused(), StartsWith("The loaded bars are ABC (D), not XYZ (D)"));
  session.Symbol = "ABC";
  session.BarIndex = -1;
  EXPECT_EQ(refused(), "No current bar");
  session.BarDate.clear();
  EXPECT_EQ(refused(), "No bars loaded");
  EXPECT_EQ(Rows(), 0U);
}

bool SameBook(const Book& a, const Book& b) { return std::memcmp(&a, &b, sizeof a) == 0; }

TEST_F(OrdersTest, BoxesThatCannotBeUsedAreNamed) {
  Account(20000, 1000, "500", 2000000);
  Order(&OrderDesk::Long, "1");
  const std::tuple<std::string&, const char*, const char*> cases[] = {
      {run.quantity, "1,5",
       "Vol/Contract: \"1,5\" is unclear: commas group thousands, a point starts the decimals"},
      {run.quantity, "-1", "Vol/Contract: \"-1\" is negative"},
      {run.quantity, "1e99", "Vol/Contract: \"1e99\" is out of range"},
      {run.commission, "32767.6", "Comm.: \"32767.6\" is out of range"},
      {run.vat, "seven", "VAT: \"seven\" is not a number"},
  };
  const Book book = session;
  for (const auto& [box, text, info] : cases) {
    const std::string before = std::exchange(box, text);
    for (const auto order : {&OrderDesk::Long, &OrderDesk::OffsetLong}) {
      EXPECT_EQ((desk.*order)(), OrderResult::kInvalid) << info;
      EXPECT_EQ(run.refusal, info);
      EXPECT_TRUE(SameBook(book, session)) << info;
    }
    box = before;
  }
  EXPECT_EQ(Rows(), 1U);
}

TEST_F(OrdersTest, AnOrderThatCannotBeBookedOrWrittenIsRolledBack) {
  session.SessionNumber = 1;
  Account(0, 1000, "0", 3e38F);
  AddBar(3e38F);
  Order(&OrderDesk::Long, "1");
  const Book held = session;
  for (const auto order : {&OrderDesk::Long, &OrderDesk::Short}) {
    EXPECT_EQ(Order(order, "3e38"), OrderResult::kRefused);
    EXPECT_TRUE(SameBook(held, session));
  }
  session.ProfitPerContract = 3e38F;
  AddBar(1e38F);
  const Book priced = session;
  EXPECT_EQ(Order(&OrderDesk::OffsetLong, "1"), OrderResult::kRefused);
  EXPECT_TRUE(SameBook(priced, session));
  EXPECT_EQ(Rows(), 1U);

  session.ProfitPerContract = 1;
  ledger.ForWriting().Execute("ALTER TABLE MyPortfolio RENAME TO Gone");
  for (const auto order : {&OrderDesk::Long, &OrderDesk::Short, &OrderDesk::OffsetLong}) {
    outside.boxes.shown.clear();
    AddBar(100);
    const Book before = session;
    EXPECT_EQ(Order(order, "1"), OrderResult::kRefused);
    EXPECT_TRUE(SameBook(before, session));
    EXPECT_THAT(outside.boxes.shown, ElementsAre(HasSubstr("The order was not placed")));
  }
  EXPECT_EQ(Ask("select * From Details").size(), 1U) << "no detail without its row";
  ledger.ForWriting().Execute("ALTER TABLE Gone RENAME TO MyPortfolio");
  EXPECT_EQ(Order(&OrderDesk::OffsetLong, "1"), OrderResult::kDone);
  EXPECT_EQ(Ask("select EntryPlace, Quantity From Trades"), (std::vector<Row>{{1.0, 1.0}}));
}

using StatusTest = OrderFixture;

TEST_F(StatusTest, FallsAndLossesAreMarked) {
  const auto status = [this]() -> const StatusTexts& {
    ShowStatus(session, run, outside.locale);
    return run.status;
  };
  AddBar(1.25F);
  session.BarOpen[1] = 1234.5F;
  session.BarHigh[1] = 1235;
  session.BarLow[1] = 1230.125F;
  EXPECT_EQ(status().prices, "O: 1,234.50 H: 1,235.00 L: 1,230.13 C: 1.25");
  EXPECT_EQ(status().moment->text, "1/2/2007 16:30");
  EXPECT_EQ(BarLine(session, outside.locale), "[ABC]  Date: 1/2/2007 16:30:00  Close: 1.25");
  EXPECT_TRUE(status().moment->fell);
  session.BarClose[0] = session.BarClose[1];
  EXPECT_FALSE(status().moment->fell) << "an unchanged close";
  session.BarIndex = 0;
  EXPECT_FALSE(status().moment->fell) << "nothing to have fallen from";
  session.BarIndex = -1;
  EXPECT_FALSE(status().moment) << "the last one stays";
  for (const float portfolio : {0.0F, -1.0F, 1e6F}) {
    session.Portfolio = portfolio;
    EXPECT_EQ(status().loss, portfolio < 0) << portfolio;
  }
  EXPECT_EQ(status().portfolio, "1,000,000");
}

}  // namespace
}  // namespace velumar
