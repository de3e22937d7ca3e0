#include "session/run_control.h"

#include <algorithm>

#include "support/session_fixture.h"

namespace velumar {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

// Runs over the daily series ABC of 200 bars, without a window or a chart program.
class RunControlTest : public SessionFixture {
 protected:
  RunControlTest() {
    Store("ABC", DailyBars(200));
    LedgerOpen(ledger, ":memory:");
    session.DataDir = data;
    session.SimDir = store;
    session.Symbol = "ABC";
  }

  bool StartAt(int bar) {
    run.start_day = MadeDate(bar);
    return control.ClaimStore() && control.Start();
  }
  // Runs an action inside the pause that follows the feed of the bar.
  void InPauseOf(int bar, std::function<void()> action) {
    outside.events.SetOnPending([this, bar, action = std::move(action)] {
      if (session.BarIndex + 1 == bar) {
        outside.events.Schedule(std::chrono::milliseconds(500), action);
      }
    });
  }
  void PauseIn(int bar) {
    InPauseOf(bar, [this] { control.EndRun(); });
  }
  std::vector<std::string>& Boxes() { return outside.boxes.shown; }
  std::size_t Rows(const std::string& table) {
    return LedgerQuery(ledger, "select * From " + table).rows.size();
  }

  RecordedCharts charts;
  LedgerConnection ledger{[](std::string_view date) { return std::string(date); }};
  RunControl control{session, run, run, platform, cache, ledger, charts};
};

TEST_F(RunControlTest, ARunFeedsEveryBarOnceAndEnds) {
  std::vector<int> fed;
  outside.events.SetOnPending([&] {
    fed.push_back(session.BarIndex + 1);
    EXPECT_TRUE(run.shown == RecordedRun::Shown::kRunning && run.setup_locked);
    EXPECT_TRUE(control.Feeding());
  });
  EXPECT_TRUE(StartAt(60));
  std::vector<int> expected;
  for (int bar = 60; bar < 200; ++bar) expected.push_back(bar);
  EXPECT_EQ(fed, expected);
  EXPECT_EQ(session.BarIndex, 199);
  EXPECT_EQ(session.StartDate, std::to_string(MadeDate(59)));
  EXPECT_EQ(session.SymbolInterval, "-1");
  EXPECT_EQ(StoreBars().size(), 200U);
  EXPECT_EQ(run.line, "End of data feed... ");
  EXPECT_EQ(run.shown, RecordedRun::Shown::kEnded);
  EXPECT_TRUE(run.setup_locked) << "until the trader goes back";
  EXPECT_EQ(charts.asked.size(), 2U + 140U);
  EXPECT_TRUE(Boxes().empty());
}

// The second run of a process starts from its own series, whatever the first one has left.
TEST_F(RunControlTest, AShorterSecondRunKeepsNothingOfTheFirst) {
  Store("FEW", DailyBars(20));
  StartAt(190);
  session.Symbol = run.symbol = "FEW";
  outside.events.SetOnPending([&] {
    if (session.BarIndex != 9) return;
    EXPECT_EQ(session.NewestShownBar, 9) << "look-ahead counts from this run's bars";
    EXPECT_EQ(session.FirstShownBar, 9);
    EXPECT_EQ(session.LastBarIndex, 19);
    EXPECT_EQ(session.StartDate, std::to_string(MadeDate(9)));
    EXPECT_TRUE(ReadBars(store, "ABC", -1).empty());
    EXPECT_EQ(StoreBars().size(), 10U);
  });
  EXPECT_TRUE(StartAt(10));
  EXPECT_EQ(session.BarIndex, 19);
  const auto runs = LedgerQuery(ledger, "select Symbol, StartDate From Runs order by Id").rows;
  ASSERT_EQ(runs.size(), 2U);
  EXPECT_EQ(runs[1], (std::vector<LedgerValue>{"FEW", std::to_string(MadeDate(9))}));
}

TEST_F(RunControlTest, PauseFeedsOneMoreBarAndPlayGoesOn) {
  PauseIn(100);
  StartAt(60);
  EXPECT_EQ(session.BarIndex, 101);
  EXPECT_TRUE(run.shown == RecordedRun::Shown::kPaused && !run.setup_locked);
  PauseIn(105);
  control.Continue();
  EXPECT_EQ(session.BarIndex, 106);
  EXPECT_EQ(run.line, "Begin of data feed ... ");
  const struct {
    void (RunControl::*step)();
    int bar;
  } cases[] = {{&RunControl::GoNext, 107},      {&RunControl::GoPrevious, 106},
               {&RunControl::GoFastRewind, 76}, {&RunControl::GoFastForward, 106},
               {&RunControl::GoFastRewind, 76}, {&RunControl::GoFastRewind, 46},
               {&RunControl::GoFastRewind, 16}, {&RunControl::GoFastRewind, 0},
               {&RunControl::GoPrevious, -1},   {&RunControl::GoPrevious, -1},
               {&RunControl::GoFastForward, 30}};
  for (const auto& c : cases) {
    const std::size_t asked = charts.asked.size();
    (control.*c.step)();
    EXPECT_EQ(session.BarIndex, c.bar);
    EXPECT_EQ(StoreBars().size(), static_cast<std::size_t>(c.bar + 1));
    const auto newest = static_cast<std::size_t>(std::max(c.bar, 0));
    EXPECT_EQ(session.MarketPrice, session.BarClose.at(newest)) << "-1 leaves the last price";
    EXPECT_EQ(charts.asked.size(), asked + 1) << "each step refreshes the charts";
  }
  EXPECT_EQ(session.NewestShownBar, 107) << "what has been seen stays seen";
}

// Orders of a run that the ledger doesn't know would join the rows of the one before.
TEST_F(RunControlTest, NoRunBeginsThatTheLedgerCannotBegin) {
  ledger.ForWriting().Execute("ALTER TABLE Runs RENAME TO Away");
  EXPECT_FALSE(StartAt(198));
  EXPECT_THAT(Boxes(), ElementsAre(testing::AllOf(HasSubstr("no such table: Runs"),
                                                  StartsWith("The run was not started"))));
  EXPECT_TRUE(session.BarDate.empty());
  EXPECT_FALSE(run.setup_locked);
  ledger.ForWriting().Execute("ALTER TABLE Away RENAME TO Runs");
  EXPECT_TRUE(StartAt(198));
  EXPECT_EQ(session.BarIndex, 199);
  LedgerClose(ledger);
  EXPECT_TRUE(StartAt(198)) << "without a ledger a run replays all the same";
}

TEST_F(RunControlTest, AnEmptySymbolIsAskedFor) {
  run.symbol.clear();
  EXPECT_FALSE(StartAt(60));
  EXPECT_THAT(Boxes(), ElementsAre("Plase specificy Symbol to simulate!"));
  EXPECT_EQ(session.StopRequested, -1);
  EXPECT_TRUE(charts.asked.empty());
  EXPECT_FALSE(run.setup_locked);
}

TEST_F(RunControlTest, ADelayOfZeroIsASecondAndChangesTakeEffectAtOnce) {
  run.delay = "0";
  std::vector<std::chrono::milliseconds> moments;
  outside.events.SetOnPending([&] {
    moments.push_back(outside.events.Now());
    if (moments.size() == 3) session.RefreshDelay = 10000;
  });
  StartAt(195);
  ASSERT_EQ(moments.size(), 5U);
  EXPECT_EQ((moments[1] - moments[0]).count(), 1000);
  EXPECT_EQ((moments[2] - moments[1]).count(), 1000);
  EXPECT_EQ((moments[4] - moments[3]).count(), 10000);
  run.delay = "";
  PauseIn(199);
  StartAt(198);
  EXPECT_EQ(run.delay, "3");
}

// Until the series is loaded there are no bars, and the store is being filled.
TEST_F(RunControlTest, ARunThatIsBeingPreparedTakesNoStepAndNoOtherRun) {
  StartAt(198);
  int looks = 0;
  charts.on_asked = [&](const std::string& what) {
    if (what == "refresh") return;
    ++looks;
    control.GoNext();
    control.GoFastRewind();
    control.Continue();
    EXPECT_EQ(session.BarIndex, -1);
    EXPECT_TRUE(session.BarDate.empty());
    // Entered for the next run.
    run.start_day = MadeDate(5);
  };
  EXPECT_TRUE(StartAt(190));
  EXPECT_EQ(looks, 2);
  EXPECT_EQ(session.FirstShownBar, 189);
  EXPECT_EQ(StoreBars().size(), 200U);
}

TEST_F(RunControlTest, BarsOfAnotherSeriesThanTheChosenOneAreNotStepped) {
  PauseIn(100);
  StartAt(90);
  session.Symbol = "FAST";
  run.interval = "15";
  for (const auto step : {&RunControl::GoNext, &RunControl::GoFastForward, &RunControl::GoPrevious,
                          &RunControl::GoFastRewind, &RunControl::Continue}) {
    Boxes().clear();
    (control.*step)();
    EXPECT_THAT(Boxes(), ElementsAre(HasSubstr("of ABC (D), not of FAST (15)")));
    EXPECT_EQ(session.BarIndex, 101);
  }
  EXPECT_EQ(Rows("Runs"), 1U) << "Play has begun no run";
  session.Symbol = "abc";
  run.interval = "D";
  control.GoNext();
  EXPECT_EQ(session.BarIndex, 102);
}

TEST_F(RunControlTest, AStoreThatFailsInAStepIsReported) {
  PauseIn(61);
  StartAt(60);
  for (const char* index : {"MASTER", "EMASTER", "XMASTER"}) {
    std::filesystem::remove(std::filesystem::path(store) / index);
  }
  const int before = session.BarIndex;
  for (const auto step : {&RunControl::GoNext, &RunControl::GoFastForward, &RunControl::GoPrevious,
                          &RunControl::GoFastRewind}) {
    Boxes().clear();
    (control.*step)();
    EXPECT_EQ(session.BarIndex, before);
    EXPECT_THAT(Boxes(), ElementsAre(EndsWith("\rThe step was not made.")));
  }
  Boxes().clear();
  control.Continue();
  EXPECT_THAT(Boxes(), ElementsAre(EndsWith("\rThe feed stopped.")));
  EXPECT_EQ(session.BarIndex, before);
  EXPECT_EQ(run.shown, RecordedRun::Shown::kEnded);
  EXPECT_FALSE(control.Feeding());
}

// A run that begins in a wait of an older one makes the older one end without another bar.
TEST_F(RunControlTest, TwoLoopsNeverFeedAtOnce) {
  int feeding = 0;
  InPauseOf(100, [&] {
    outside.events.SetOnPending([&] { ++feeding; });
    StartAt(150);
    EXPECT_EQ(session.BarIndex, 199);
  });
  StartAt(90);
  EXPECT_EQ(feeding, 50);
  EXPECT_EQ(session.FirstShownBar, 149);
  EXPECT_EQ(StoreBars().size(), 200U);
}

}  // namespace
}  // namespace velumar
