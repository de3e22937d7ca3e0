#include "session/plan_levels.h"
#include "support/whole_program.h"

namespace velumar {
namespace {

struct TicketWindowTest : RunFixture {
  TicketWindowTest() {
    ledger_file = scratch.Sub("Portfolio.mdb");
    Reopen();
    all->program.Start();
  }
  FrmTicket& Ticket() { return all->windows.frmTicket; }
  void Press(int code) { all->program.Keys().Press({.code = code}); }
};

TEST_F(TicketWindowTest, APlanIsForTheOrderThatTheTraderMeans) {
  InPauseOf(120, [this] {
    Press(run_key::kPlan);
    EXPECT_TRUE(Ticket().Visible() && all->program.Feeding()) << "the feed goes on";
    EXPECT_EQ(Ticket().cboFor.Text(), "The next order");
    Ticket().txtStop.UserType("1");
    EXPECT_THAT(Ticket().lblRisk.Text(), HasSubstr("Long 1 risks"));
    all->Panel().imgLong.UserClick();
    Ticket().on_enter();
    EXPECT_THAT(Ticket().lblStatus.Text(), HasSubstr("An order came in between"));
    EXPECT_THAT(Ticket().cboFor.Text(), StartsWith("Long 1 at "));
    EXPECT_EQ(Ticket().txtStop.Text(), "1") << "what was typed stays";
    Ticket().chkPause.UserToggle();
    Ticket().on_enter();
    EXPECT_FALSE(Ticket().Loaded());
    ASSERT_NE(all->session.Plans.Last(), nullptr);
    EXPECT_EQ(all->session.Plans.Last()->plan->stop, 1);
    all->Panel().imgPlan.UserClick();
    EXPECT_EQ(Ticket().cboFor.Text(), "The next order") << "the trade has its plan";
    for (TextBox* box : {&Ticket().txtTarget, &Ticket().txtReasons}) box->UserType("1");
    for (ComboBox* box : {&Ticket().cboSetup, &Ticket().cboConfidence}) box->SetText("3");
    Ticket().cboFor.UserChoose(1);
    EXPECT_EQ(Ticket().txtReasons.Text() + Ticket().txtTarget.Text() + Ticket().cboSetup.Text() +
                  Ticket().cboConfidence.Text(),
              "")
        << "the trade's own";
    Ticket().cboFor.UserChoose(1);
    Ticket().txtTarget.UserType(PlanPriceText(all->session.MarketPrice + 0.01F));
    Ticket().on_escape();
    EXPECT_FALSE(all->session.Plans.Last()->plan->target.has_value());
    all->Panel().imgPlan.UserClick();
    Ticket().cboFor.UserChoose(1);
    Ticket().txtTarget.UserType(PlanPriceText(all->session.MarketPrice + 0.01F));
    Ticket().cmdKeep.UserClick();
  });
  all->Play(119);
  EXPECT_EQ(all->session.BarIndex, 199) << "pausing is switched off";
  const std::vector<PlanLevel> levels = PlanLevels(all->session);
  ASSERT_EQ(levels.size(), 2U);
  EXPECT_TRUE(!levels[0].reached && levels[1].reached);
}

}  // namespace
}  // namespace velumar
