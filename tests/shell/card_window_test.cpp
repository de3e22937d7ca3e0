#include "ledger/cards.h"
#include "results/run_record.h"
#include "session/blind_mask.h"
#include "session/card_play.h"
#include "support/whole_program.h"

namespace velumar {
namespace {

// A session with a long and a short, and a card of bar 120, which is due on the next day.
struct CardWindowTest : RunFixture {
  CardWindowTest() {
    ledger_file = scratch.Sub("Portfolio.mdb");
    Reopen();
    all->program.Start();
    InPauseOf(120, [this] {
      Press(run_key::kMark);
      marked = all->Navigator().Label6.Text();
      Press(run_key::kMark);
      again = all->Navigator().Label6.Text();
      all->Navigator().Image4.UserClick();
    });
    all->Play(119);
    for (int i = 0; i < 5; ++i) all->Navigator().Image1.UserClick();
    all->Panel().imgPlan.UserClick();
    all->windows.frmTicket.txtStop.UserType("1");
    all->windows.frmTicket.cmdKeep.UserClick();
    all->Panel().imgLong.UserClick();
    all->Navigator().Image1.UserClick();
    all->Panel().txtContractVol.UserType("1");
    all->Panel().imgOffsetLong.UserClick();
    all->Panel().ImgShort.UserClick();
    all->Panel().ImgOffsetShort.UserClick();
    all->Navigator().Image1.UserClick();
    all->Navigator().Image2.UserClick();
    bar = all->session.Orders.front().bar;
    all->Navigator().Image5.UserClick();
    all->outside.clock.today = 20071019;
  }
  void Press(int code) { all->program.Keys().Press({.code = code}); }
  FrmCard& Card() { return all->windows.frmCard; }
  CardControls& Page() { return all->windows.frmPractice.cards; }
  std::string Cell(std::size_t row, std::size_t column) {
    return Page().lstCards.Content().text(row, column);
  }
  void OpenCards() {
    all->Setup().lnkPractice.UserClick();
    all->windows.frmPractice.tabPage.UserChoose(FrmPractice::kCardsPage);
  }
  std::string marked;
  std::string again;
  int bar = 0;
};

TEST_F(CardWindowTest, AMarkedBarIsDecidedAgainAndJudged) {
  EXPECT_THAT(marked, HasSubstr("a card for tomorrow"));
  EXPECT_THAT(again, HasSubstr("a card already"));
  const auto orders = ReadRecord(all->ledger, kCurrentRun).orders.size();
  const int runs = NewestRun(all->ledger);
  OpenCards();
  EXPECT_EQ(all->Setup().lnkPractice.Text(), "Practice (1 due) ...");
  EXPECT_EQ(Cell(0, 0) + "," + Cell(0, 2), "now,hidden");
  Page().lstCards.UserKeyUp(kEnterKey);
  ASSERT_TRUE(Card().Visible() && !all->Setup().Visible());
  const int cut = all->session.BarIndex;
  EXPECT_EQ(StoreSize("BLIND"), static_cast<std::size_t>(cut + 1));
  EXPECT_FLOAT_EQ(all->session.BarClose[static_cast<std::size_t>(cut)], 100);
  EXPECT_TRUE(all->session.Orders.empty() && all->session.LAccum == 0);
  all->program.ResumeSession(1);
  EXPECT_EQ(all->session.BarIndex, cut) << "no session begins over a card";
  Card().txtStop.UserType("101");
  Card().cmdLong.UserClick();
  EXPECT_THAT(Card().lblStatus.Text(), HasSubstr("must be below 100.00"));
  Card().txtStop.UserType("50");
  Card().cboConfidence.UserChoose(4);
  Card().cmdLong.UserClick();
  EXPECT_EQ(StoreSize("BLIND"), static_cast<std::size_t>(bar + 3)) << "as far as it was shown";
  ASSERT_EQ(all->session.Orders.size(), 1U);
  ASSERT_EQ(all->session.EarlierOrders.size(), 4U) << "what was done then";
  EXPECT_EQ(all->session.EarlierOrders[0].bar, bar);
  const std::vector<std::string> lines = Card().lstOutcome.Lines();
  EXPECT_THAT(lines.at(0), StartsWith("Now: long at 100.00, stop 50.00, confidence 4: +"));
  EXPECT_THAT(lines.at(1),
              AllOf(StartsWith("Then: long at 10"), HasSubstr(", stop "), HasSubstr(" R")));
  Card().cmdGood.UserClick();
  EXPECT_FALSE(Card().cmdNext.Visible()) << "no other is due";
  EXPECT_THAT(Card().lstOutcome.Lines().at(2), StartsWith("It was ABC, daily, "));
  EXPECT_THAT(Card().lstOutcome.Lines().at(3), HasSubstr("comes back on 10/22/2007"));
  Card().Image5.UserClick();
  EXPECT_TRUE(all->Setup().Visible() && all->windows.frmPractice.Visible());
  EXPECT_EQ(all->Setup().lnkPractice.Text(), "Practice ...");
  EXPECT_EQ(Cell(0, 2), "ABC, daily");
  EXPECT_EQ(all->session.Symbol, "ABC") << "the one that was entered";
  EXPECT_EQ(ReadRecord(all->ledger, kCurrentRun).orders.size(), orders);
  EXPECT_EQ(NewestRun(all->ledger), runs);
  all->windows.frmPractice.tabPage.UserChoose(FrmPractice::kSessionsPage);
  all->windows.frmPractice.cmdResume.UserClick();
  EXPECT_EQ(all->session.BarIndex, bar + 1) << "the session is where it was";
  all->Navigator().Image5.UserClick();
  OpenCards();
  all->windows.frmPractice.tabPage.UserChoose(FrmPractice::kSessionsPage);
  all->windows.frmPractice.cmdEnd.UserClick();
  all->windows.frmPractice.tabPage.UserChoose(FrmPractice::kCardsPage);
  Page().lstCards.UserKeyUp(kEnterKey);
  Card().cmdShort.UserClick();
  EXPECT_EQ(StoreSize("BLIND"), static_cast<std::size_t>(cut + 1 + CardPlay::kBars));
}

TEST_F(CardWindowTest, CardsOfTradesAndLossesDoNotRepeatAndChangedDataIsSaid) {
  CardMaker maker(all->ledger, all->cache, all->outside.clock, true);
  const LedgerOrderKey entry = ReadRecord(all->ledger, kCurrentRun).orders.front().key;
  EXPECT_TRUE(maker.MakeOfTrade(entry));
  EXPECT_FALSE(maker.MakeOfTrade(entry, LedgerCard::Kind::kLoss));
  EXPECT_THROW(maker.MakeOfTrade({9, 9}), std::exception);
  EXPECT_EQ(maker.MakeOfLosses(5).made, 0);
  all->ledger.ForWriting().Execute("DELETE FROM Cards; UPDATE Trades SET Money = -5 * ExitPlace");
  EXPECT_EQ(maker.MakeOfLosses(1).made, 1);
  EXPECT_EQ(LedgerCards(all->ledger).at(0).order, entry) << "R before money";
  EXPECT_EQ(maker.MakeOfLosses(5).made, 1);
  EXPECT_EQ(maker.MakeOfLosses(5).made, 0);
  OpenCards();
  EXPECT_EQ(Cell(0, 0) + "," + Cell(0, 1), "now,loss") << "at once, since it was asked for";
  IndexCache cache;
  std::vector<Bar> bars = DailyBars(200);
  bars[3].close += 1;
  StoreSecurity(data, {"ABC", "Abc", -1}, bars, cache);
  Page().cmdPractise.UserClick();
  EXPECT_THAT(all->outside.boxes.shown.back(), HasSubstr("Its data has changed"));
  EXPECT_FALSE(Card().Loaded());
  EXPECT_TRUE(all->Setup().Visible());
  all->outside.boxes.answers = {0};
  Page().cmdDeleteCard.UserClick();
  EXPECT_EQ(Page().lstCards.Content().count, 1U);
}

TEST_F(CardWindowTest, ACardThatIsClosedWhileItPlaysOnStaysDue) {
  OpenCards();
  Page().cmdPractise.UserClick();
  const int cut = all->session.BarIndex;
  all->At(400, [this] { Card().Image5.UserClick(); });
  Card().cmdNothing.UserClick();
  EXPECT_FALSE(Card().Loaded());
  EXPECT_TRUE(all->session.BarDate.empty());
  EXPECT_LT(StoreSize("BLIND"), static_cast<std::size_t>(cut + 6));
  EXPECT_EQ(Cell(0, 0), "now");
}

}  // namespace
}  // namespace velumar
