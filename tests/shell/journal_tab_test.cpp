#include "ledger/cards.h"
#include "ledger/notes.h"
#include "support/whole_program.h"

namespace velumar {
namespace {

// A session with a long trade over two bars, and the journal on the screen.
struct JournalTabTest : RunFixture {
  JournalTabTest() {
    ledger_file = scratch.Sub("Portfolio.mdb");
    Reopen();
    all->program.Start();
    all->Setup().Combo1.UserChoose(0);
    InPauseOf(120, [this] {
      entry_bar = all->session.BarIndex;
      all->Panel().imgLong.UserClick();
      all->Navigator().Image4.UserClick();
    });
    all->Play(119);
    for (int step = 0; step < 2; ++step) all->Navigator().Image1.UserClick();
    exit_bar = all->session.BarIndex;
    all->Panel().imgOffsetLong.UserClick();
    all->Panel().imgGraph.UserClick();
    Result().tabSheets.UserChoose(FrmResult::kJournalTab);
  }
  FrmResult& Result() { return all->windows.frmResult; }
  JournalControls& Tab() { return Result().journal; }

  int entry_bar = 0;
  int exit_bar = 0;
};

TEST_F(JournalTabTest, NotesAreKeptAsSoonAsTheTraderLeavesThem) {
  ASSERT_EQ(Tab().lstTrades.Content().count, 1U);
  const auto note = [this](const std::string& text) {
    Tab().txtNote.UserType(text);
    Tab().txtNote.UserLeave();
  };
  note("Too early");
  note("Too early, but right");
  Tab().txtNote.UserLeave();
  EXPECT_THAT(Tab().lblNoteDate.Text(), HasSubstr("UTC, changed"));
  EXPECT_EQ(Tab().lstTrades.Content().text(0, 9), "Too early, but right");
  Tab().tabNote.UserChoose(JournalControls::kSessionNote);
  EXPECT_EQ(Tab().txtNote.Text(), "");
  Tab().txtNote.UserType("A calm day");
  all->desktop.Unload(Result());
  const std::vector<LedgerNote> notes = LedgerNotes(all->ledger);
  ASSERT_EQ(notes.size(), 3U) << "one for each change";
  EXPECT_EQ(notes[0].order, (LedgerOrderKey{1, 1}));
  EXPECT_EQ(notes[2].order.run, 0);
  EXPECT_EQ(notes[2].session, 1);
  EXPECT_EQ(notes[2].text, "A calm day") << "also when the window is closed";
}

TEST_F(JournalTabTest, ANoteThatCantBeWrittenIsOnTheClipboardAndReportedOnce) {
  LedgerClose(all->ledger);
  Tab().txtNote.UserType("Too early");
  const std::size_t before = all->outside.boxes.shown.size();
  Tab().cbxOutcome.UserChoose(1);
  Tab().cbxOutcome.UserChoose(0);
  all->desktop.Unload(Result());
  EXPECT_EQ(all->outside.boxes.shown.size(), before + 1);
  EXPECT_EQ(all->outside.clipboard.text, "Too early");
}

TEST_F(JournalTabTest, FiltersLeaveWhatPassesAndThePictureOpens) {
  Tab().cbxOutcome.UserChoose(2);
  EXPECT_EQ(Tab().lstTrades.Content().count, 0U);
  EXPECT_EQ(Tab().lblCount.Text(), "0 of 1 trades");
  EXPECT_FALSE(Tab().txtNote.Enabled()) << "no trade is selected";
  Tab().cbxOutcome.UserChoose(1);
  Tab().lstTrades.UserKeyUp(kEnterKey);
  EXPECT_FALSE(all->windows.frmPicture.Visible()) << "there is none";
  Tab().txtFind.UserType("no such text");
  std::filesystem::create_directory(scratch / "Journal");
  scratch.Write("Journal/Portfolio-1-2.png", "picture");
  Result().cbxRun.UserChoose(1);
  EXPECT_EQ(Tab().lblCount.Text(), "1 of 1 trades") << "a filter is for one session";
  all->desktop.Unload(Result());
  all->Panel().imgGraph.UserClick();
  Result().tabSheets.UserChoose(FrmResult::kJournalTab);
  Tab().tabPicture.UserChoose(JournalControls::kExitPicture);
  Tab().lstTrades.UserKeyUp(kEnterKey);
  EXPECT_TRUE(all->windows.frmPicture.Visible());
  EXPECT_THAT(all->windows.frmPicture.imgChart.Text(), EndsWith("Portfolio-1-2.png"));
}

TEST_F(JournalTabTest, AnEntryBecomesACardOnce) {
  ASSERT_TRUE(Tab().lnkCard.Visible());
  for (const char* const said : {"is a card now", "is a card already"}) {
    Tab().lnkCard.UserClick();
    EXPECT_THAT(all->outside.boxes.shown.back(), HasSubstr(said));
  }
  const std::vector<LedgerCard> cards = LedgerCards(all->ledger);
  ASSERT_EQ(cards.size(), 1U);
  EXPECT_EQ(cards[0].bar, entry_bar - 1) << "the last that it shows";
}

TEST_F(JournalTabTest, ATradeIsPlayedAgainInASessionOfItsOwn) {
  const int first = all->session.SessionNumber;
  Tab().lnkAgain.UserClick();
  EXPECT_FALSE(Result().Loaded());
  EXPECT_TRUE(all->Navigator().Visible());
  EXPECT_EQ(all->session.BarIndex, entry_bar - 1);
  EXPECT_EQ(StoreSize(), static_cast<std::size_t>(entry_bar)) << "nothing of the entry yet";
  EXPECT_EQ(all->session.LAccum, 0);
  EXPECT_FALSE(all->program.Feeding());
  EXPECT_THAT(all->session.Orders, IsEmpty());
  const int again = all->session.SessionNumber;
  EXPECT_NE(again, first);
  EXPECT_EQ(LedgerReadSession(all->ledger, again).session.again, (LedgerOrderKey{1, 1}));
  EXPECT_EQ(LedgerReadSession(all->ledger, first).moment.bar, exit_bar) << "as it was left";

  EXPECT_FALSE(all->session.ShowsEarlier);
  all->program.Keys().Press({.code = run_key::kEarlierTrade});
  EXPECT_TRUE(all->session.ShowsEarlier);
  ASSERT_EQ(all->session.EarlierOrders.size(), 2U);
  EXPECT_EQ(all->session.EarlierOrders[1].bar, exit_bar);

  all->Navigator().Image5.UserClick();
  all->program.ResumeSession(again);
  EXPECT_EQ(all->session.Again, (LedgerOrderKey{1, 1})) << "also when it is resumed";
  EXPECT_FALSE(all->session.ShowsEarlier);
}

TEST_F(JournalTabTest, ATradeThatIsOpenIsPlayedAgainToo) {
  all->desktop.Unload(Result());
  all->Panel().ImgShort.UserClick();
  all->Navigator().Image1.UserClick();
  all->Panel().imgGraph.UserClick();
  Result().tabSheets.UserChoose(FrmResult::kJournalTab);
  ASSERT_EQ(Tab().lstTrades.Content().count, 2U);
  Tab().lstTrades.UserSelect({1});
  Tab().lnkAgain.UserClick();
  EXPECT_EQ(all->session.BarIndex, exit_bar - 1);
  EXPECT_EQ(all->session.Again, (LedgerOrderKey{1, 3}));
}

}  // namespace
}  // namespace velumar
