#include <algorithm>

#include "support/whole_program.h"

namespace velumar {
namespace {

struct RunTest : RunFixture {
  // Back in the setup, the next run can be chosen.
  void ExpectFreeSetup() {
    all->Navigator().Image5.UserClick();
    EXPECT_TRUE(all->Setup().Text3.Reachable() && all->Setup().Combo1.Reachable());
    EXPECT_FALSE(all->Setup().Label6.Visible());
  }
  std::ptrdiff_t ChartsOpened() { return std::ranges::count(all->outside.chart.sent, "%FO"); }
  std::size_t Rows(const std::string& table) {
    return LedgerQuery(all->ledger, "select * From " + table).rows.size();
  }
  void Choose(const std::string& symbol) {
    const auto& rows = all->Setup().Combo1.Rows();
    const auto row = std::ranges::find(rows, symbol, &ComboBox::Row::text);
    all->Setup().Combo1.UserChoose(static_cast<int>(row - rows.begin()));
  }
};

TEST_F(RunTest, TheNavigatorShowsTheRunAndPausesAndPlaysIt) {
  Form2& navigator = all->Navigator();
  InPauseOf(99, [&] {
    EXPECT_TRUE(!navigator.Image3.Visible() && navigator.Image4.Visible());
    EXPECT_TRUE(all->Setup().Label6.Visible() && !all->Setup().Text3.Visible());
    all->Panel().Combo2.UserType("x");
    EXPECT_EQ(all->Panel().Combo2.Text(), "x") << "corrected once it is whole";
    all->Panel().Combo2.UserType("10");
    all->outside.chart.focused = RecordingChart::kOtherWindow;
    all->program.Keys().Trader().Look();
    all->program.Keys().Press({run_key::kSpace});
    EXPECT_EQ(all->session.StopRequested, 0) << "typed into another program";
    all->outside.chart.focused = RecordingChart::kOwnWindow;
    all->program.Keys().Trader().ComeToRun();
    navigator.Image4.UserClick();
  });
  StartAt(60);
  EXPECT_EQ(all->session.BarIndex, 100);
  EXPECT_THAT(navigator.Label6.Text(), StartsWith("[ABC]  Date: "));
  EXPECT_TRUE(navigator.Image3.Visible() && !navigator.Image4.Visible());
  EXPECT_FLOAT_EQ(navigator.Progress.Fraction(), 41.0F / 140);
  EXPECT_THAT(navigator.Progress.ToolTip(), StartsWith("41 of 140 bars, about 17 min"));
  navigator.Image6.UserClick();
  EXPECT_EQ(StoreSize(), 71U);
  all->outside.events.SetOnPending(nullptr);
  navigator.Image3.UserClick();
  EXPECT_EQ(StoreSize(), 200U);
  ExpectFreeSetup();
}

TEST_F(RunTest, ClicksDuringASlideAreIgnoredOrMeantForTheNextRun) {
  all->program.Start();
  all->Setup().DTPicker1.UserPick(MadeDate(190));
  all->At(100, [this] {
    all->Setup().Image3.UserClick();
    EXPECT_FALSE(all->Setup().Text3.Reachable() || all->Setup().Combo1.Reachable());
    all->Setup().DTPicker1.SetValue(MadeDate(5));
  });
  all->Setup().Image3.UserClick();
  EXPECT_EQ(all->session.FirstShownBar, 189);
  EXPECT_EQ(ChartsOpened(), 1);
  all->At(100, [this] { all->Navigator().Image5.UserClick(); });
  all->Navigator().Image5.UserClick();
  EXPECT_TRUE(all->Setup().Visible() && !all->Navigator().Loaded());
  const std::string top = all->outside.settings.texts["NavTop"];
  all->At(200, [this] {
    ASSERT_TRUE(all->Navigator().Visible()) << "as it slides in";
    all->Navigator().Image5.UserClick();
  });
  all->Setup().Image3.UserClick();
  EXPECT_TRUE(all->Setup().Visible() && !all->Navigator().Visible());
  EXPECT_EQ(ChartsOpened(), 1) << "no run has begun";
  EXPECT_EQ(all->outside.settings.texts["NavTop"], top) << "where it comes to rest";
}

// Only a feed with an open position is asked about. Closing the box lets it continue.
TEST_F(RunTest, CloseAndReturnAsksWhatBecomesOfAnOpenPosition) {
  std::vector<std::string>& boxes = all->outside.boxes.shown;
  for (const bool held : {false, true}) {
    for (const std::size_t answer : {1U, 0U}) {
      InPauseOf(61, [&] {
        boxes.clear();
        all->outside.boxes.answers = {answer};
        if (held) (answer == 0 ? all->Panel().imgLong : all->Panel().ImgShort).UserClick();
        all->Navigator().Image5.UserClick();
        EXPECT_EQ(boxes.size(), held ? 1U : 0U);
      });
      StartAt(60);
      EXPECT_EQ(all->session.BarIndex < 199, held && answer == 0) << "ended or continued";
      if (held && answer == 1) {
        EXPECT_EQ(all->session.SAccum, 1) << "the position is kept";
      }
      EXPECT_FALSE(all->Panel().Visible());
    }
  }
}

TEST_F(RunTest, AnOrderInAPauseFillsAtItsBarAndIsSaved) {
  InPauseOf(61, [this] {
    all->Panel().txtContractVol.UserType("2");
    all->Panel().ImgOffsetShort.UserClick();
    EXPECT_EQ(all->Panel().lblinfo.ForeColour(), kRed);
    all->Panel().imgLong.UserClick();
    EXPECT_EQ(all->Panel().lblinfo.ForeColour(), kBlue);
    EXPECT_EQ(all->session.LAvgPrice, all->session.BarClose[61]);
    all->session.Balance = -1e6F;
    all->Navigator().Image1.UserClick();
    EXPECT_EQ(all->windows.frmBigScore.lblScore.ForeColour(), kRed) << "the money is gone";
  });
  StartAt(60);
  EXPECT_EQ(Rows("MyPortfolio"), 1U);
  all->Navigator().Image3.UserClick();
  EXPECT_EQ(Rows("MyPortfolio"), 0U) << "a new run";
  EXPECT_EQ(Rows("Archive"), 1U);
  EXPECT_EQ(all->session.LAccum, 2) << "the book goes on";
}

// Until the series is loaded there are no bars, and the store is being filled. Going back unlocks
// the setup, but the run keeps its series.
TEST_F(RunTest, ARunThatIsBeingPreparedTakesNoOrderAndKeepsItsSeries) {
  StartAt(198);
  all->Navigator().Image5.UserClick();
  int looks = 0;
  const auto click_all = [&] {
    ++looks;
    all->Panel().imgLong.UserClick();
    EXPECT_EQ(all->Panel().lblinfo.Text(), "not yet: the run is being prepared");
    all->program.Keys().Press({run_key::kSpace});
    EXPECT_EQ(all->session.StopRequested, 0);
  };
  all->Setup().DTPicker1.UserPick(MadeDate(190));
  all->At(1460, click_all);  // while the notice blinks
  all->At(4860, [&] {        // while the file dialog is open
    click_all();
    all->Navigator().Image5.UserClick();
    Choose("FAST");
    all->Setup().DTPicker1.UserPick(MadeDate(5));
    all->Setup().Image3.UserClick();
    EXPECT_TRUE(all->Setup().Visible()) << "Start is ignored now";
  });
  all->Setup().Image3.UserClick();
  EXPECT_EQ(looks, 2);
  EXPECT_EQ(Rows("MyPortfolio"), 0U);
  EXPECT_EQ(ChartsOpened(), 2);
  EXPECT_EQ(all->session.FirstShownBar, 189);
  EXPECT_EQ(StoreSize(), 200U);
  all->Setup().Image3.UserClick();
  EXPECT_EQ(StoreSize("FAST", 15), 200U);
}

TEST_F(RunTest, AFailedPreparationFeedsNothingAndBringsTheSetupBack) {
  StoreSecurity(data, {"EMPTY", "Empty", -1}, {}, all->cache);
  InPauseOf(195, [this] { all->Panel().imgLong.UserClick(); });
  StartAt(190);
  ExpectFreeSetup();
  Choose("EMPTY");
  all->Setup().Image3.UserClick();
  EXPECT_THAT(all->outside.boxes.shown, ElementsAre(StartsWith("1720\r")));
  EXPECT_EQ(Rows("MyPortfolio"), 1U) << "no run follows the last one";
  EXPECT_TRUE(all->Setup().Visible());
  EXPECT_FALSE(all->Navigator().Visible() || all->Panel().Visible());
  ExpectFreeSetup();
  EXPECT_EQ(StoreSize(), 0U);
  Choose("ABC");
  all->Setup().Image3.UserClick();
  EXPECT_EQ(StoreSize(), 200U);
}

// A folder of the trader's own that happens to be called so.
TEST_F(RunTest, AFolderThatIsNoStoreLeavesTheSetupWindowAsItWas) {
  std::filesystem::create_directory(data + "/Simulate");
  WriteFile(data + "/Simulate/F1.DAT", "mine");
  StartAt(60);
  EXPECT_THAT(all->outside.boxes.shown, ElementsAre(HasSubstr("F1.DAT")));
  EXPECT_TRUE(all->Setup().Visible() && all->Setup().Image3.Reachable());
  EXPECT_EQ(ChartsOpened(), 0);
}

}  // namespace
}  // namespace velumar
