#include <random>

#include "base/number_text.h"
#include "session/plan_levels.h"
#include "support/order_fixture.h"
#include "trading/trade_ticket.h"

namespace velumar {
namespace {

struct PlansTest : OrderFixture {
  PlansTest() { Account(100, 1000, "0", 2000000); }

  // The answer to a ticket for the n-th order: the next one, then the newest, and so on.
  TicketAnswer Ask(std::size_t order, const TicketTexts& texts) {
    run.quantity = "5";
    return ticket.Answer(ticket.Orders().at(order), texts);
  }
  void Plan(std::size_t order, const TicketTexts& texts) {
    const TicketAnswer answer = Ask(order, texts);
    ASSERT_EQ(answer.problem, "");
    ticket.Keep(ticket.Orders().at(order), answer.plan);
  }
  std::string Reached(float low, float high, float close) {
    AddBar(close);
    session.BarLow.back() = low;
    session.BarHigh.back() = high;
    return ReachedText(session, session.BarIndex - 1);
  }
  // Order, what is held of it, and its stop.
  std::vector<std::string> Held(const TradePlans& plans) {
    std::vector<std::string> texts;
    for (const PlannedOrder& order : plans.Orders()) {
      const auto stop = order.plan ? order.plan->stop : std::nullopt;
      texts.push_back(std::to_string(order.key.place) + (order.is_long ? " long " : " short ") +
                      PlainNumberText(static_cast<float>(order.held)) + " " +
                      std::to_string(stop.value_or(0)));
    }
    return texts;
  }

  TradeTicket ticket{session, run, platform, ledger, charts};
};

TEST_F(PlansTest, TheTicketAnswersWhileTheTraderTypes) {
  struct Case {
    TicketTexts texts;
    std::string problem;
    std::string risk;
    std::string quantity;
  };
  const Case cases[] = {
      {{"96", "120"}, "", "Long 5 risks 20,000.00, 1.00 %", ""},
      {{.stop = "98.5", .percent = "1"}, "", "Long 5 risks 7,500.00, 0.38 %", "13"},
      {{.stop = "103", .percent = "0.1"}, "", "Short 5 risks 15,000.00, 0.75 %", "0"},
      {{.stop = "99.8", .percent = "0.1"}, "", "Long 5 risks 1,000.00, 0.05 %", "10"},
      {{.stop = "96", .percent = "100"}, "", "Long 5 risks 20,000.00, 1.00 %", "500"},
      {{.target = "120", .percent = "1"}, "", "", ""},
      {{.target = "100"}, "The target of a Short must be below 100.00", "", ""},
      {{"96", "99"}, "The target of a Long must be above 100.00", "", ""},
      {{.stop = "100"}, "The stop of a Short must be above 100.00", "", ""},
      {{.stop = "9x"}, "Stop: \"9x\" is not a price", "", ""},
      {{.target = "1e99"}, "Target: \"1e99\" is not a price", "", ""},
      {{.confidence = "6"}, "Confidence: \"6\" is not a number from 1 to 5", "", ""},
      {{.reasons = std::string(1001, 'x')}, "Reasons: too long", "", ""}};
  for (const Case& one : cases) {
    const TicketAnswer answer = Ask(0, one.texts);
    EXPECT_EQ(answer.problem, one.problem);
    EXPECT_EQ(answer.risk, one.risk.empty() ? "" : one.risk + " of the portfolio");
    EXPECT_EQ(answer.quantity, one.quantity);
  }
}

TEST_F(PlansTest, APlanGoesToTheOrderThatItFits) {
  Plan(0, {.stop = "96", .setup = "gap"});
  Order(&OrderDesk::Short, "1");
  EXPECT_THAT(run.line, HasSubstr("stop 96.00 is on the wrong side of 100.00"));
  Order(&OrderDesk::OffsetShort, "1");
  EXPECT_TRUE(session.Plans.Next().has_value()) << "an offset has no stop";
  Order(&OrderDesk::Long, "2");
  EXPECT_FALSE(session.Plans.Next().has_value());
  EXPECT_EQ(TradeTicket::Meant(ticket.Orders()), 0U) << "it has its plan";
  EXPECT_EQ(Ask(1, {.stop = "9.6"}).plan.risk, 2 * 90.4 * 1000) << "corrected at the entry";
  AddBar(110);
  EXPECT_EQ(Ask(1, {.stop = "111"}).problem, "The stop of a Long must be below 110.00");
  Plan(1, {.stop = "108", .setup = "gap"});
  const RunOrder kept = ReadRecord(ledger, kCurrentRun).orders.back();
  EXPECT_EQ(kept.plan->stop, 108);
  EXPECT_EQ(kept.plan->risk, 8000) << "as at the entry";
  Order(&OrderDesk::Long, "1");
  EXPECT_EQ(TradeTicket::Meant(ticket.Orders()), 1U) << "open, and without a plan";
  Order(&OrderDesk::OffsetLong, "3");
  EXPECT_EQ(Ask(1, {.stop = "90"}).problem, "Only an open trade has a stop and a target");
  Plan(0, {.setup = "late"});
  Order(&OrderDesk::Short, "1");
  EXPECT_EQ(ReadRecord(ledger, kCurrentRun).orders.back().plan->setup, "late");
  EXPECT_EQ(ticket.Setups().size(), 2U);
}

TEST_F(PlansTest, ALevelIsReachedOnceByBarsAfterItWasSet) {
  Order(&OrderDesk::Long, "5");
  EXPECT_EQ(Reached(90, 130, 110), "");
  Plan(1, {"96", "120"});
  EXPECT_EQ(Reached(97, 119, 110), "");
  EXPECT_EQ(Reached(97, 120, 110), "Target 120.00 of Long 5 reached.");
  EXPECT_EQ(Reached(97, 121, 110), "") << "already";
  EXPECT_EQ(Reached(95.5F, 100, 99), "Stop 96.00 of Long 5 reached.");
  AddBar(112);
  Plan(1, {"108", "120"});
  const LedgerPlan written = LedgerPlansOfSession(ledger, session.SessionNumber).at(0);
  EXPECT_EQ(std::pair(written.stop_since, written.target_since), std::pair(6, 1));
  EXPECT_EQ(PlanLevels(session).at(0).reached, false) << "moved to where the price has been";
  EXPECT_TRUE(PlanLevels(session).at(1).reached) << "the target has not moved";
  EXPECT_EQ(Reached(0, 0, 107), "Stop 108.00 of Long 5 reached.") << "a series of closes";
  session.BarIndex = 0;
  EXPECT_FALSE(PlanLevels(session).at(0).reached) << "stepped back";
  AddBar(50);
  Order(&OrderDesk::Short, "1");
  Plan(1, {"52", "40"});
  EXPECT_EQ(Reached(40, 52, 45), "Stop 52.00 of Short 1, Target 40.00 of Short 1 reached.");
}

TEST_F(PlansTest, TheLedgerGivesBackTheOpenTrades) {
  std::mt19937 random(5);
  const std::pair<OrderResult (OrderDesk::*)(), const char*> orders[] = {
      {&OrderDesk::Long, "2"},        {&OrderDesk::Long, "0.7"},
      {&OrderDesk::Short, "3"},       {&OrderDesk::OffsetLong, "1"},
      {&OrderDesk::OffsetLong, "2"},  {&OrderDesk::OffsetShort, "3"},
      {&OrderDesk::OffsetShort, "4"}, {&OrderDesk::OffsetLong, "0.7"}};
  for (int i = 0; i < 200; ++i) {
    if (random() % 2 == 0) Plan(0, {.stop = random() % 2 == 0 ? "90" : "110"});
    const auto& [order, quantity] = orders[random() % std::size(orders)];
    Order(order, quantity);
    TradePlans restored;
    restored.Restore(ReadRecord(ledger, kCurrentRun).orders, LedgerPlansOfSession(ledger, 0));
    const auto open = [this](const TradePlans& plans) {
      std::vector<std::string> held = Held(plans);
      std::erase_if(held,
                    [](const std::string& text) { return text.find(" 0 ") != std::string::npos; });
      return held;
    };
    ASSERT_EQ(open(restored), open(session.Plans)) << i;
    ASSERT_EQ(restored.Next().has_value(), session.Plans.Next().has_value()) << i;
  }
  Order(&OrderDesk::Long, "1");
  const auto held = Held(session.Plans);
  ledger.ForWriting().Execute("DROP TABLE Wiped");
  EXPECT_EQ(Order(&OrderDesk::OffsetLong, "1000"), OrderResult::kRefused);
  EXPECT_EQ(Held(session.Plans), held) << "as the book";
  ledger.ForWriting().Execute("DROP TABLE Plans; CREATE TABLE Plans (Id)");
  for (const std::size_t order : {0, 1}) {
    const TicketAnswer answer = Ask(order, {.stop = "95"});
    EXPECT_EQ(answer.problem, "");
    EXPECT_THROW(ticket.Keep(ticket.Orders().at(order), answer.plan), std::runtime_error);
  }
  EXPECT_EQ(Held(session.Plans), held) << "as the ledger";
  EXPECT_FALSE(session.Plans.Next().has_value());
}

}  // namespace
}  // namespace velumar
