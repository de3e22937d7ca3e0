#include <algorithm>
#include <fstream>
#include <iterator>

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
  // As typed while the setup window is hidden.
  void TypeSymbol(const std::string& symbol) {
    all->Setup().Combo1.SetText(symbol);
    all->Setup().Combo1.on_key_up(0);
  }
};

TEST_F(RunTest, ARunFeedsEveryBarOnceAndEnds) {
  std::vector<int> fed;
  all->outside.events.SetOnPending([&] { fed.push_back(all->session.BarIndex + 1); });
  StartAt(60);
  std::vector<int> expected;
  for (int bar = 60; bar < 200; ++bar) expected.push_back(bar);
  EXPECT_EQ(fed, expected);
  EXPECT_EQ(all->session.BarIndex, 199);
  EXPECT_EQ(all->session.LastBarIndex, 199);
  EXPECT_EQ(all->session.StartDate, std::to_string(MadeDate(59)));
  EXPECT_EQ(all->session.SymbolInterval, "-1");
  EXPECT_EQ(StoreSize(), 200);
  EXPECT_EQ(all->Navigator().Label6.Text(), "End of data feed... ");
  EXPECT_TRUE(all->Navigator().Image3.Visible());
  EXPECT_FALSE(all->Navigator().Image4.Visible());
  EXPECT_TRUE(all->outside.boxes.shown.empty());
  ExpectFreeSetup();
}

// Other programs leave bars out of order and one twice. The chart and the trader stand on the same
// bar all the same.
TEST_F(RunTest, ADisorderedFileIsReplayedInOrder) {
  constexpr std::size_t kRecord = 28;
  const std::string file = data + "/F1.DAT";
  std::ifstream in(file, std::ios::binary);
  std::string bytes{std::istreambuf_iterator<char>(in), {}};
  const auto record = [&](std::size_t bar) { return bytes.substr((bar + 1) * kRecord, kRecord); };
  ASSERT_EQ(bytes.size(), 201 * kRecord);
  const std::string late = record(150);
  bytes.replace(151 * kRecord, kRecord, record(10));
  bytes.replace(11 * kRecord, kRecord, late);
  bytes += record(3) + record(90);  // two days a second time
  bytes[2] = static_cast<char>(203);
  std::ofstream(file, std::ios::binary) << bytes;

  int looks = 0;
  all->outside.events.SetOnPending([&] {
    const std::vector<Bar> shown = ReadBars(all->session.SimDir, "ABC", -1);
    ASSERT_EQ(shown.size(), all->session.BarIndex + 1U);
    EXPECT_EQ(shown.back().date, MadeDate(all->session.BarIndex));
    EXPECT_EQ(all->session.BarDate.at(shown.size() - 1), shown.back().date);
    ++looks;
  });
  StartAt(60);
  EXPECT_EQ(looks, 140);
  EXPECT_EQ(all->session.LastBarIndex, 199);
}

// Orders of a run that the ledger doesn't know would join the rows of the one before.
TEST_F(RunTest, NoRunBeginsThatTheLedgerCannotBegin) {
  all->program.Start();
  all->ledger.ForWriting().Execute("ALTER TABLE Runs RENAME TO Away");
  all->Setup().DTPicker1.UserPick(MadeDate(198));
  all->Setup().Image3.UserClick();
  ASSERT_EQ(all->outside.boxes.shown.size(), 1U);
  EXPECT_THAT(all->outside.boxes.shown[0], testing::HasSubstr("No run was begun"));
  EXPECT_THAT(all->outside.boxes.shown[0], testing::HasSubstr("no such table: Runs"));
  EXPECT_TRUE(all->session.BarDate.empty());
  all->ledger.ForWriting().Execute("ALTER TABLE Away RENAME TO Runs");
  all->Navigator().Image5.UserClick();
  all->Setup().Image3.UserClick();
  EXPECT_EQ(all->session.BarIndex, 199);
}

TEST_F(RunTest, PauseFeedsOneMoreBarAndPlayGoesOn) {
  InPauseOf(100, [this] { all->Navigator().Image4.UserClick(); });
  StartAt(60);
  EXPECT_EQ(all->session.BarIndex, 101);
  EXPECT_THAT(all->Navigator().Label6.Text(), testing::StartsWith("[ABC]  Date: "));
  EXPECT_TRUE(all->Navigator().Image3.Visible());
  InPauseOf(105, [this] { all->Navigator().Image4.UserClick(); });
  all->Navigator().Image3.UserClick();
  EXPECT_EQ(all->session.BarIndex, 106);
  EXPECT_EQ(StoreSize(), 107);
  ExpectFreeSetup();
}

TEST_F(RunTest, TheProgressLineTellsHowFarTheRunIs) {
  InPauseOf(99, [this] { all->Navigator().Image4.UserClick(); });
  all->program.Start();
  all->Panel().Combo2.SetText("10");
  all->Setup().DTPicker1.UserPick(MadeDate(60));
  all->Setup().Image3.UserClick();
  const ProgressLine& line = all->Navigator().Progress;
  ASSERT_EQ(all->session.BarIndex, 100);
  EXPECT_FLOAT_EQ(line.Fraction(), 41.0F / 140);
  EXPECT_EQ(line.ToolTip(), "41 of 140 bars, about 17 min left");  // 99 bars of 10.51 s
  all->Navigator().Image6.UserClick();
  all->Navigator().Image6.UserClick();
  EXPECT_EQ(line.Fraction(), 0) << "behind the start";
  all->session.BarIndex = 198;
  all->Navigator().Image1.UserClick();
  EXPECT_EQ(line.ToolTip(), "140 of 140 bars");
  EXPECT_EQ(line.Fraction(), 1);
}

TEST_F(RunTest, PlayInsideTheStoppedLoopsPauseEndsTheOldLoop) {
  InPauseOf(100, [this] {
    all->outside.events.SetOnPending(nullptr);
    all->Navigator().Image4.UserClick();
    all->At(50, [this] { all->Navigator().Image4.UserClick(); });
    all->Navigator().Image3.UserClick();
    EXPECT_EQ(all->session.BarIndex, 101);
    EXPECT_FALSE(all->program.Feeding());
  });
  StartAt(90);
  EXPECT_EQ(all->session.BarIndex, 101) << "the old loop feeds no further bar";
  EXPECT_NE(all->Navigator().Label6.Text(), "End of data feed... ");
}

TEST_F(RunTest, CloseAndReturnInAFeedThenStartHasOneLoop) {
  int starts = 0;
  std::vector<int> fed;
  all->outside.events.SetOnPending([&] {
    fed.push_back(all->session.BarIndex + 1);
    if (all->session.BarIndex + 1 == 70 && ++starts == 1) {
      all->At(1000, [this] {
        all->Navigator().Image5.UserClick();
        EXPECT_FALSE(all->Navigator().Loaded());
        EXPECT_TRUE(all->Setup().Visible());
        EXPECT_TRUE(all->Setup().ImgDonate.Visible());
        all->Setup().Image3.UserClick();
      });
    }
  });
  StartAt(60);
  // Bars 60 to 70 of the first run, then the whole second one.
  std::vector<int> expected;
  for (int bar = 60; bar <= 70; ++bar) expected.push_back(bar);
  for (int bar = 60; bar < 200; ++bar) expected.push_back(bar);
  EXPECT_EQ(fed, expected);
  EXPECT_EQ(StoreSize(), 200);
}

TEST_F(RunTest, AFeedBehindCloseAndReturnRestartsTheAccount) {
  InPauseOf(100, [this] {
    all->session.LAccum = 5;
    all->Navigator().Image5.UserClick();
  });
  StartAt(90);
  EXPECT_EQ(all->session.BarIndex, 199);
  EXPECT_EQ(all->session.LAccum, 0);
  EXPECT_TRUE(all->Panel().Loaded());
  EXPECT_FALSE(all->Panel().Visible());
}

TEST_F(RunTest, ASecondClickInASlideIsTheSameWish) {
  all->program.Start();
  all->Setup().DTPicker1.UserPick(MadeDate(190));
  all->At(100, [this] { all->Setup().Image3.UserClick(); });
  all->Setup().Image3.UserClick();
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

TEST_F(RunTest, AnOrderInAPauseFillsAtItsBarAndIsKept) {
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

// Until the series is loaded there are no bars, and the store is being filled anew.
TEST_F(RunTest, ARunThatIsBeingPreparedTakesNoOrderNoStepAndNoOtherRun) {
  StartAt(198);
  all->Navigator().Image5.UserClick();
  all->outside.chart.sent.clear();
  int looks = 0;
  const auto click_all = [&] {
    ASSERT_TRUE(all->Navigator().Visible());
    ++looks;
    all->Panel().imgLong.UserClick();
    EXPECT_EQ(all->program.LastOrder(), OrderResult::kInvalid);
    EXPECT_EQ(all->Panel().lblinfo.Text(), "not yet: the run is being prepared");
    for (PictureButton* step : {&all->Navigator().Image1, &all->Navigator().Image2,
                                &all->Navigator().Image6, &all->Navigator().Image7}) {
      step->UserClick();
    }
    all->program.Keys().Press({run_key::kSpace});
    EXPECT_EQ(all->session.StopRequested, 0) << "Space doesn't pause it either";
    EXPECT_EQ(all->session.BarIndex, -1);
    EXPECT_THAT(all->outside.chart.sent, testing::Not(testing::Contains("%VR")))
        << "the file dialog would take it";
  };
  all->Setup().DTPicker1.UserPick(MadeDate(190));
  all->At(2500, click_all);  // as the notice blinks
  all->At(5900, click_all);  // as the file dialog stands open
  bool first_pause = true;
  all->outside.events.SetOnPending([&] {
    if (first_pause) all->At(1000, [this] { all->Panel().imgLong.UserClick(); });
    first_pause = false;
  });
  all->Setup().Image3.UserClick();
  EXPECT_EQ(looks, 2);
  EXPECT_EQ(StoreSize(), 200);
  EXPECT_EQ(LedgerQuery(all->ledger, "select * From MyPortfolio").rows.size(), 1U)
      << "the order at the first bar";
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

TEST_F(RunTest, AnotherSymbolChosenInTheLastPauseLeavesTheFeedAlone) {
  InPauseOf(100, [this] {
    all->Navigator().Image4.UserClick();
    all->Navigator().Image5.UserClick();
    Choose("FAST");
  });
  StartAt(90);
  EXPECT_EQ(all->session.BarIndex, 101);
  EXPECT_EQ(ReadBars(all->session.SimDir, "ABC", -1).size(), 102U);
  EXPECT_TRUE(ReadBars(all->session.SimDir, "FAST", 15).empty());
  EXPECT_THAT(all->Navigator().Label6.Text(), testing::StartsWith("[ABC]"));
  EXPECT_TRUE(all->outside.boxes.shown.empty());
}

TEST_F(RunTest, BarsOfAnotherSymbolThanTheChosenOneAreNotStepped) {
  InPauseOf(100, [this] {
    all->Panel().imgLong.UserClick();
    all->Navigator().Image4.UserClick();
  });
  StartAt(90);
  TypeSymbol("FAST");
  for (PictureButton* button :
       {&all->Navigator().Image1, &all->Navigator().Image2, &all->Navigator().Image6,
        &all->Navigator().Image7, &all->Navigator().Image3}) {
    all->outside.boxes.shown.clear();
    button->UserClick();
    EXPECT_THAT(all->outside.boxes.shown,
                testing::ElementsAre(testing::HasSubstr("of ABC (D), not of FAST (15)")));
    EXPECT_EQ(all->session.BarIndex, 101);
  }
  EXPECT_EQ(LedgerQuery(all->ledger, "select * From MyPortfolio").rows.size(), 1U)
      << "Play has begun no run";
  all->Panel().imgLong.UserClick();
  EXPECT_EQ(all->program.LastOrder(), OrderResult::kInvalid);
  TypeSymbol("abc");
  all->Navigator().Image1.UserClick();
  EXPECT_EQ(all->session.BarIndex, 102);
  all->Panel().imgLong.UserClick();
  EXPECT_EQ(LedgerQuery(all->ledger,
                        "select * From MyPortfolio where Symbol = 'ABC' and SymbolInterval = -1")
                .rows.size(),
            2U);
}

TEST_F(RunTest, AnEmptySymbolIsAskedFor) {
  all->program.Start();
  all->Setup().Combo1.UserType("");
  all->Setup().Image3.UserClick();
  EXPECT_EQ(all->outside.boxes.shown,
            std::vector<std::string>{"Plase specificy Symbol to simulate!"});
  EXPECT_EQ(all->session.StopRequested, -1);
  EXPECT_TRUE(all->outside.chart.sent.empty());
  EXPECT_TRUE(all->Setup().Visible());
  EXPECT_FALSE(all->Navigator().Visible() || all->Panel().Visible());
}

TEST_F(RunTest, WhatIsChosenInTheStartsSlideIsForTheNextRun) {
  all->program.Start();
  all->Setup().DTPicker1.UserPick(MadeDate(190));
  all->At(50, [this] {
    EXPECT_FALSE(all->Setup().Text3.Reachable() || all->Setup().Combo1.Reachable());
    all->Setup().DTPicker1.SetValue(MadeDate(5));
  });
  all->Setup().Image3.UserClick();
  EXPECT_EQ(all->session.FirstShownBar, 189);
}

TEST_F(RunTest, AStoreThatFailsInAStepIsTold) {
  InPauseOf(61, [this] { all->Navigator().Image4.UserClick(); });
  StartAt(60);
  for (const char* index : {"MASTER", "EMASTER", "XMASTER"}) {
    std::filesystem::remove(NativePath(all->session.SimDir) / index);
  }
  const int before = all->session.BarIndex;
  for (PictureButton* button : {&all->Navigator().Image1, &all->Navigator().Image2,
                                &all->Navigator().Image6, &all->Navigator().Image7}) {
    all->outside.boxes.shown.clear();
    button->UserClick();
    EXPECT_EQ(all->session.BarIndex, before);
    EXPECT_THAT(all->outside.boxes.shown,
                testing::ElementsAre(testing::EndsWith("\rThe step was not made.")));
  }
  all->outside.boxes.shown.clear();
  all->Navigator().Image3.UserClick();
  EXPECT_THAT(all->outside.boxes.shown,
              testing::ElementsAre(testing::EndsWith("\rThe feed stopped.")));
  EXPECT_EQ(all->session.BarIndex, before);
  EXPECT_TRUE(all->Navigator().Image3.Visible()) << "the feed has ended";
}

TEST_F(RunTest, ADelayOfZeroIsASecondAndChangesTakeEffectAtOnce) {
  all->program.Start();
  all->Panel().Combo2.SetText("0");
  all->Setup().DTPicker1.UserPick(MadeDate(195));
  std::vector<long> moments;
  all->outside.events.SetOnPending([&] {
    moments.push_back(all->Now());
    if (moments.size() == 3) {
      all->At(600, [this] { all->Panel().Combo2.UserType("10"); });
    }
  });
  all->Setup().Image3.UserClick();
  ASSERT_EQ(moments.size(), 5U);
  EXPECT_EQ(moments[1] - moments[0], 1500);
  EXPECT_EQ(moments[2] - moments[1], 1500);
  EXPECT_EQ(moments[4] - moments[3], 10500);
  EXPECT_EQ(all->session.RefreshDelay, 10000);
}

}  // namespace
}  // namespace velumar
