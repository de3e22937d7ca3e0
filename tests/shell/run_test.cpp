#include <algorithm>
#include <fstream>

#include "base/paths.h"
#include "support/run_fixture.h"

namespace velumar {
namespace {

class RunTest : public RunFixture {
 protected:
  // Back in the setup, the next run can be chosen.
  void ExpectFreeSetup() {
    all->Navigator().Image5.UserClick();
    Form1& setup = all->Setup();
    for (const Control* box : std::initializer_list<Control*>{
             &setup.Text3, &setup.Command5, &setup.Combo1, &setup.cbxPeriod, &setup.DTPicker1}) {
      EXPECT_TRUE(box->Reachable()) << box->Name();
    }
    EXPECT_FALSE(setup.Label6.Visible());
  }
  void Choose(const std::string& symbol) {
    const auto& rows = all->Setup().Combo1.Rows();
    const auto row = std::ranges::find(rows, symbol, &ComboBox::Row::text);
    ASSERT_NE(row, rows.end());
    all->Setup().Combo1.UserChoose(static_cast<int>(row - rows.begin()));
  }
};

TEST_F(RunTest, TheButtonsOfTheNavigatorStepPauseAndPlay) {
  Form2& navigator = all->Navigator();
  InPauseOf(100, [&] { navigator.Image4.UserClick(); });
  StartAt(60);
  EXPECT_EQ(all->session.BarIndex, 101);
  EXPECT_THAT(navigator.Label6.Text(), testing::StartsWith("[ABC]  Date: "));
  EXPECT_TRUE(navigator.Image3.Visible() && !navigator.Image4.Visible());
  InPauseOf(105, [&] {
    EXPECT_TRUE(!navigator.Image3.Visible() && navigator.Image4.Visible());
    EXPECT_TRUE(all->Setup().Label6.Visible() && !all->Setup().Text3.Visible());
    navigator.Image4.UserClick();
  });
  navigator.Image3.UserClick();
  for (const auto& [button, bar] :
       {std::pair(&navigator.Image1, 107), {&navigator.Image2, 106}, {&navigator.Image6, 76}}) {
    button->UserClick();
    EXPECT_EQ(all->session.BarIndex, bar);
    EXPECT_EQ(all->session.CurrentDate, std::to_string(MadeDate(107))) << "the newest bar played";
  }
  EXPECT_EQ(StoreSize(), 77);
  ExpectFreeSetup();
}

TEST_F(RunTest, TheProgressLineShowsHowFarTheRunIs) {
  InPauseOf(99, [this] { all->Navigator().Image4.UserClick(); });
  all->program.Start();
  all->Panel().Combo2.SetText("10");
  all->Setup().DTPicker1.UserPick(MadeDate(60));
  all->Setup().Image3.UserClick();
  const ProgressLine& line = all->Navigator().Progress;
  EXPECT_FLOAT_EQ(line.Fraction(), 41.0F / 140);
  EXPECT_EQ(line.ToolTip(), "41 of 140 bars, about 17 min left");  // 99 bars of 10.51 s
  all->Navigator().Image6.UserClick();
  all->Navigator().Image6.UserClick();
  EXPECT_EQ(line.Fraction(), 0) << "before the start";
  all->session.BarIndex = 198;
  all->Navigator().Image1.UserClick();
  EXPECT_EQ(line.ToolTip(), "140 of 140 bars");
  EXPECT_EQ(line.Fraction(), 1);
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
  const auto& sent = all->outside.chart.sent;
  EXPECT_EQ(std::count(sent.begin(), sent.end(), "%Fe"), 1);
  all->At(100, [this] { all->Navigator().Image5.UserClick(); });
  all->Navigator().Image5.UserClick();
  EXPECT_TRUE(all->Setup().Visible());
  EXPECT_FALSE(all->Navigator().Loaded());
}

TEST_F(RunTest, GoingBackWhileTheNavigatorSlidesInBeginsNoRun) {
  all->program.Start();
  all->At(700, [this] {
    ASSERT_TRUE(all->Navigator().Visible());
    all->Navigator().Image5.UserClick();
  });
  all->Setup().Image3.UserClick();
  EXPECT_TRUE(all->Setup().Visible());
  EXPECT_FALSE(all->Navigator().Visible());
  EXPECT_TRUE(all->outside.chart.sent.empty());
}

TEST_F(RunTest, AnOrderInAPauseFillsAtItsBarAndIsSaved) {
  InPauseOf(61, [this] {
    all->Panel().txtContractVol.UserType("2");
    all->Panel().imgLong.UserClick();
    EXPECT_EQ(all->program.LastOrder(), OrderResult::kDone);
    EXPECT_EQ(all->session.LAvgPrice, all->session.BarClose[61]);
  });
  StartAt(60);
  const auto rows = LedgerQuery(all->ledger, "select Position, LAccum From MyPortfolio").rows;
  ASSERT_EQ(rows.size(), 1U);
  EXPECT_EQ(rows[0][1], LedgerValue(2.0));
  all->Navigator().Image3.UserClick();
  EXPECT_TRUE(LedgerQuery(all->ledger, "select * From MyPortfolio").Empty());
  EXPECT_EQ(LedgerQuery(all->ledger, "select * From Archive").rows.size(), 1U);
  EXPECT_EQ(all->session.LAccum, 2) << "the book goes on";
}

// Until the series is loaded there are no bars, and the store is being filled.
TEST_F(RunTest, ARunThatIsBeingPreparedTakesNoOrderAndNoSpace) {
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
  all->At(2500, click_all);  // while the notice blinks
  all->At(5900, click_all);  // while the file dialog is open
  all->Setup().Image3.UserClick();
  EXPECT_EQ(looks, 2);
  EXPECT_EQ(StoreSize(), 200);
  EXPECT_TRUE(LedgerQuery(all->ledger, "select * From MyPortfolio").Empty());
}

// Going back while it is prepared gives the setup's boxes back, but the run keeps to its series.
TEST_F(RunTest, WhatIsChosenWhileARunIsPreparedIsForTheNextOne) {
  all->program.Start();
  all->Setup().DTPicker1.UserPick(MadeDate(190));
  all->At(2500, [this] {
    all->Navigator().Image5.UserClick();
    Choose("FAST");
    all->Setup().DTPicker1.UserPick(MadeDate(5));
    all->Setup().Image3.UserClick();
    EXPECT_TRUE(all->Setup().Visible()) << "Start means nothing now";
  });
  all->Setup().Image3.UserClick();
  const auto& sent = all->outside.chart.sent;
  EXPECT_EQ(std::count(sent.begin(), sent.end(), "%FO"), 1);
  EXPECT_EQ(std::count(sent.begin(), sent.end(), "ABC"), 1);
  EXPECT_EQ(all->session.FirstShownBar, 189);
  EXPECT_EQ(ReadBars(all->session.SimDir, "ABC", -1).size(), 200U);
  EXPECT_TRUE(ReadBars(all->session.SimDir, "FAST", 15).empty());
  all->Setup().Image3.UserClick();
  EXPECT_EQ(ReadBars(all->session.SimDir, "FAST", 15).size(), 200U);
}

TEST_F(RunTest, AFailedPreparationFeedsNothingAndBringsTheSetupBack) {
  IndexCache cache;
  StoreSecurity(data, {"EMPTY", "Empty", -1}, {}, cache);
  InPauseOf(195, [this] { all->Panel().imgLong.UserClick(); });
  StartAt(190);
  ExpectFreeSetup();
  Choose("EMPTY");
  all->Setup().Image3.UserClick();
  EXPECT_THAT(all->outside.boxes.shown, testing::ElementsAre(testing::StartsWith("1720\r")));
  EXPECT_EQ(LedgerQuery(all->ledger, "select * From MyPortfolio").rows.size(), 1U)
      << "no run follows the last one";
  EXPECT_TRUE(all->Setup().Visible());
  EXPECT_FALSE(all->Navigator().Visible() || all->Panel().Visible());
  ExpectFreeSetup();
  EXPECT_TRUE(all->session.BarDate.empty());
  EXPECT_FALSE(all->program.Feeding());
  EXPECT_TRUE(ReadBars(all->session.SimDir, "ABC", -1).empty());
  Choose("ABC");
  all->Setup().Image3.UserClick();
  EXPECT_EQ(StoreSize(), 200);
}

TEST_F(RunTest, ADelayTypedInAPauseCountsAtTheNextBar) {
  std::vector<long> moments;
  all->outside.events.SetOnPending([&] {
    moments.push_back(all->Now());
    if (moments.size() == 2) all->At(600, [this] { all->Panel().Combo2.UserType("10"); });
  });
  StartAt(196);
  ASSERT_EQ(moments.size(), 4U);
  EXPECT_EQ(moments[1] - moments[0], 3500);
  EXPECT_EQ(moments[3] - moments[2], 10500);
}

// A folder of the trader's own that happens to be called so.
TEST_F(RunTest, AFolderThatIsNoStoreLeavesTheSetupWindowAsItWas) {
  const auto store = std::filesystem::path(data) / "Simulate";
  std::filesystem::create_directories(store);
  std::ofstream(store / "F1.DAT") << "mine";
  StartAt(60);
  ASSERT_EQ(all->outside.boxes.shown.size(), 1U);
  EXPECT_THAT(all->outside.boxes.shown[0], testing::HasSubstr("F1.DAT"));
  EXPECT_TRUE(all->Setup().Visible());
  EXPECT_TRUE(all->Setup().Image3.Reachable());
  EXPECT_TRUE(all->outside.chart.sent.empty());
  std::filesystem::remove(store / "F1.DAT");
  InPauseOf(61, [this] { all->Navigator().Image4.UserClick(); });
  all->Setup().Image3.UserClick();
  EXPECT_GT(StoreSize(), 60);
}

}  // namespace
}  // namespace velumar
