#include "base/number_text.h"
#include "support/whole_program.h"

namespace velumar {
namespace {

// Two sessions, the second one with positions on both sides, and a new process after them.
struct PracticeWindowTest : RunFixture {
  PracticeWindowTest() {
    ledger_file = scratch.Sub("Portfolio.mdb");
    Reopen();
    all->program.Start();
    Play("FAST", 100);
    Play("ABC", 119);
    LedgerClose(all->ledger);
    Reopen();
    all->program.Start();
  }
  void Play(const char* symbol, int bar) {
    Form1& setup = all->Setup();
    setup.Combo1.UserChoose(symbol == std::string("ABC") ? 0 : 1);
    for (const auto& [box, text] : Account(setup)) box->UserType(text);
    InPauseOf(bar, [this, symbol] {
      all->Panel().txtContractVol.UserType("2");
      if (symbol == std::string("ABC")) {
        all->Panel().imgLong.UserClick();
        all->Panel().txtContractVol.UserType("3");
        all->Panel().ImgShort.UserClick();
      }
      all->Navigator().Image4.UserClick();
    });
    all->Play(bar - 1);
    open_profit = all->session.LUnrealisedMoney + all->session.SUnrealisedMoney;
    all->Navigator().Image5.UserClick();
  }
  static std::map<TextBox*, std::string> Account(Form1& setup) {
    return {{&setup.txtInitPorfolio, "3000000"},
            {&setup.txtContractValue, "60"},
            {&setup.txtProfitperContract, "2"},
            {&setup.txtcomm, "5"},
            {&setup.txtVAT, "3"}};
  }
  float open_profit = 0;
  FrmPractice& Window() { return all->windows.frmPractice; }
  std::string Cell(std::size_t row, std::size_t column) {
    return Window().lstSessions.Content().text(row, column);
  }
};

TEST_F(PracticeWindowTest, EnterGoesOnWithTheLastSession) {
  all->Setup().lnkPractice.UserClick();
  ASSERT_EQ(Window().lstSessions.Content().count, 2U);
  EXPECT_EQ(Cell(0, 0), "ABC, daily");
  EXPECT_EQ(Cell(0, 2), "2 long, 3 short");
  EXPECT_EQ(ToDouble(Cell(0, 3)), open_profit) << "at the last bar that was shown";
  EXPECT_LT(open_profit, 0);
  EXPECT_EQ(Cell(1, 0), "FAST, 15 min");
  EXPECT_THAT(Cell(1, 6), EndsWith(" 09:30"));
  Window().lstSessions.UserKeyUp(kEnterKey);
  EXPECT_FALSE(Window().Loaded());
  EXPECT_TRUE(all->Navigator().Visible());
  EXPECT_EQ(all->Setup().Combo1.Text(), "ABC");
  for (const auto& [box, text] : Account(all->Setup())) EXPECT_EQ(box->Text(), text) << box->Name();
  EXPECT_EQ(all->session.BarIndex, 120);
  EXPECT_EQ(all->session.LAccum, 2);
  EXPECT_EQ(all->Panel().txtContractVol.Text(), "3") << "not the market's 1";
  EXPECT_EQ(all->session.Orders.size(), 2U);
  EXPECT_EQ(StoreSize(), 121U);
  EXPECT_FALSE(all->program.Feeding()) << "the trader looks first";
}

TEST_F(PracticeWindowTest, NoSessionBeginsDuringAnImportAndABoxSaysSo) {
  std::string prices;
  for (const Bar& bar : DailyBars(200)) prices += std::to_string(bar.date) + ",5,6,4,5,10\n";
  scratch.Write("NEW.csv", prices);
  all->Setup().on_drop({(scratch / "NEW.csv").string()});
  int asked = 0;
  all->outside.events.SetOnPending([&] {
    if (asked++ == 0) all->program.ResumeSession(2);
  });
  all->windows.frmImport.cmdImport.UserClick();
  EXPECT_GT(asked, 0);
  EXPECT_THAT(all->outside.boxes.shown, Contains(HasSubstr("once the import has ended")));
  EXPECT_FALSE(all->Navigator().Visible());
}

TEST_F(PracticeWindowTest, AChangedSeriesGoesOnAtTheSameMomentIfTheTraderWantsIt) {
  all->program.ResumeSession(2);
  const int bar = all->session.Orders.at(0).bar;
  LedgerWritePlan(all->ledger, {.session = 2, .order = {2, 1}, .stop = 1, .stop_since = bar});
  all->Navigator().Image2.UserClick();
  all->Navigator().Image5.UserClick();
  IndexCache cache;
  std::vector<Bar> bars = IntradayBars(200, 15);
  bars[3].time += 100;
  StoreSecurity(data, {"FAST", "Fast", 15}, bars, cache);
  bars = DailyBars(200);
  bars.insert(bars.begin(), bars[0])->date = 19991231;
  StoreSecurity(data, {"ABC", "Abc", -1}, bars, cache);
  all->Setup().lnkPractice.UserClick();
  Window().lstSessions.UserSelect({1});
  Window().lstSessions.UserKeyUp(kEnterKey);
  EXPECT_THAT(all->outside.boxes.shown, Contains(HasSubstr("volumes or times of its")));
  EXPECT_FALSE(all->Navigator().Visible()) << "cancelled";
  all->outside.boxes.answers = {0};
  all->program.ResumeSession(2);
  EXPECT_THAT(all->outside.boxes.shown, Contains(HasSubstr("it had 120.")));
  EXPECT_EQ(all->session.BarIndex, 120);
  EXPECT_EQ(all->session.NewestShownBar, 121) << "the bar that was stepped back over";
  EXPECT_EQ(all->session.Orders.at(0).bar, bar + 1);
  EXPECT_EQ(all->session.Plans.Orders().at(0).plan.value().stop_since, bar + 1);
}

TEST_F(PracticeWindowTest, AnEndedSessionStaysAndADeletedOneGoes) {
  all->program.ResumeSession(2);
  all->Navigator().Image5.UserClick();
  all->Setup().lnkPractice.UserClick();
  Window().cmdEnd.UserClick();
  EXPECT_TRUE(all->session.BarDate.empty()) << "it can't be traded any more";
  EXPECT_EQ(all->session.SessionNumber, 0);
  EXPECT_THAT(Cell(0, 6), HasSubstr("ended"));
  EXPECT_EQ(Window().lstSessions.Selected(), std::vector<std::size_t>{1}) << "the next open one";
  Window().lstSessions.UserSelect({0});
  EXPECT_FALSE(Window().cmdResume.Enabled());
  Window().lstSessions.UserKeyUp(kEnterKey);
  EXPECT_FALSE(all->Navigator().Visible());
  all->outside.boxes.answers = {1};
  Window().cmdDelete.UserClick();
  EXPECT_EQ(Window().lstSessions.Content().count, 2U) << "cancelled";
  all->outside.boxes.answers = {0};
  Window().lstSessions.UserSelect({0});
  Window().lstSessions.UserKeyUp(kDeleteKey);
  EXPECT_EQ(Window().lstSessions.Content().count, 1U);
  EXPECT_EQ(Cell(0, 0), "FAST, 15 min");
}

}  // namespace
}  // namespace velumar
