#include "session/run_control.h"

#include "ledger/trades.h"
#include "session/card_making.h"
#include "session/card_play.h"
#include "session/delay.h"
#include "support/ledger_rows.h"
#include "support/session_fixture.h"

namespace velumar {
namespace {

// Runs over the daily series ABC of 200 bars, without a window or a chart program.
struct RunControlTest : SessionFixture {
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
  // Ends the run in the pause that follows the feed of the bar.
  void PauseIn(int bar) {
    outside.events.SetOnPending([this, bar] {
      if (session.BarIndex + 1 != bar) return;
      outside.events.Schedule(std::chrono::milliseconds(500), [this] { control.EndRun(); });
    });
  }
  std::vector<std::string>& Boxes() { return outside.boxes.shown; }
  std::vector<std::vector<LedgerValue>> Runs() {
    return LedgerQuery(ledger, "select Symbol, StartDate From Runs order by Id").rows;
  }

  RecordedCharts charts;
  LedgerConnection ledger{[](std::string_view date) { return std::string(date); }};
  RunControl control{session, run, run, platform, cache, ledger, charts};
};

TEST_F(RunControlTest, ARunFeedsEveryBarOnceAndEnds) {
  int bar = 60;
  outside.events.SetOnPending([&] {
    EXPECT_EQ(session.BarIndex + 1, bar++);
    EXPECT_TRUE(run.shown == RecordedRun::Shown::kRunning && run.setup_locked);
    EXPECT_TRUE(control.Feeding());
  });
  control.OnMove([&] {  // it may order, so the bar must be on the charts
    EXPECT_EQ(charts.asked.size() - 2, static_cast<std::size_t>(session.BarIndex - 59));
  });
  EXPECT_TRUE(StartAt(60));
  EXPECT_EQ(session.BarIndex, 199);
  EXPECT_EQ(session.StartDate, std::to_string(MadeDate(59)));
  EXPECT_EQ(run.start_day, MadeDate(60));
  EXPECT_EQ(StoreBars().size(), 200U);
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
  });
  EXPECT_TRUE(StartAt(10));
  EXPECT_EQ(session.BarIndex, 19);
  ASSERT_EQ(Runs().size(), 2U);
  EXPECT_EQ(Runs()[1], (std::vector<LedgerValue>{"FEW", std::to_string(MadeDate(9))}));
}

TEST_F(RunControlTest, PauseFeedsOneMoreBarAndPlayGoesOn) {
  PauseIn(100);
  StartAt(60);
  EXPECT_EQ(session.BarIndex, 101);
  EXPECT_TRUE(run.shown == RecordedRun::Shown::kPaused && !run.setup_locked);
  PauseIn(105);
  control.Continue();
  EXPECT_EQ(session.BarIndex, 106);
  for (const auto& [step, bar] : {std::pair(&RunControl::GoNext, 107),
                                  {&RunControl::GoFastRewind, 77},
                                  {&RunControl::GoFastForward, 107},
                                  {&RunControl::GoPrevious, 106}}) {
    const std::size_t asked = charts.asked.size();
    (control.*step)();
    EXPECT_EQ(session.BarIndex, bar);
    EXPECT_EQ(session.MarketPrice, session.BarClose.at(static_cast<std::size_t>(bar)));
    EXPECT_EQ(charts.asked.size(), asked + 1) << "each step refreshes the charts";
  }
  EXPECT_EQ(session.NewestShownBar, 107) << "what has been seen stays seen";
}

TEST_F(RunControlTest, ADayIsReachedInOneStepFromEitherSide) {
  PauseIn(100);
  StartAt(60);
  // A day in the series, one before it, one between two bars, the last one.
  const std::pair<std::int32_t, int> cases[] = {
      {MadeDate(150), 150},     {MadeDate(0) - 1, 0}, {MadeDate(120), 120}, {MadeDate(90) + 1, 91},
      {MadeDate(199) + 9, 199}, {MadeDate(199), 199}, {MadeDate(170), 170}};
  for (const auto& [day, bar] : cases) {
    outside.boxes.date = day;
    const std::size_t asked = charts.asked.size();
    const std::vector<std::int32_t> offered = {MadeDate(0), MadeDate(199),
                                               MadeDate(session.BarIndex)};
    control.GoToDate();
    EXPECT_EQ(outside.boxes.days, offered);
    EXPECT_EQ(session.BarIndex, bar);
    EXPECT_EQ(session.CurrentDate, std::to_string(MadeDate(bar)));
    const std::vector<Bar> bars = StoreBars();
    ASSERT_EQ(bars.size(), static_cast<std::size_t>(bar) + 1);
    EXPECT_EQ(bars.back().close, session.MarketPrice);
    EXPECT_EQ(charts.asked.size(), asked + 1) << "one refresh";
  }
  outside.boxes.date.reset();
  control.GoToDate();
  EXPECT_EQ(session.BarIndex, 170) << "cancelled";
  outside.boxes.date = MadeDate(0);
  control.GoToDate();
  control.GoPrevious();
  EXPECT_EQ(session.BarIndex, -1);
  control.GoFastRewind();
  EXPECT_EQ(session.BarIndex, 0);
  control.GoPrevious();
  control.GoFastForward();
  EXPECT_EQ(session.BarIndex, 30) << "30 from the first bar";
  EXPECT_EQ(StoreBars().size(), 31U);
}

// A session that is resumed would have forgotten the bars that were shown.
TEST_F(RunControlTest, ABarWhoseMomentCannotBeSavedIsTheLastOne) {
  outside.events.SetOnPending([&] {
    if (session.BarIndex == 99) ledger.ForWriting().Execute("DROP TABLE SessionMoments");
  });
  StartAt(60);
  EXPECT_EQ(session.BarIndex, 100);
  EXPECT_EQ(run.shown, RecordedRun::Shown::kEnded);
  EXPECT_EQ(charts.asked.size(), 2U + 41U) << "the bar is shown before the next order";
  EXPECT_THAT(Boxes(),
              ElementsAre(AllOf(StartsWith("The feed stopped."), HasSubstr("SessionMoments"))));
}

// Orders of a run that the ledger doesn't know would join the rows of the one before.
TEST_F(RunControlTest, NoRunBeginsWithoutASymbolOrThatTheLedgerCannotBegin) {
  ledger.ForWriting().Execute("ALTER TABLE Runs RENAME TO Away");
  EXPECT_FALSE(StartAt(198));
  EXPECT_THAT(Boxes(), ElementsAre(AllOf(HasSubstr("no such table: Runs"),
                                         StartsWith("The run was not started"))));
  EXPECT_FALSE(run.setup_locked);
  Boxes().clear();
  run.symbol.clear();
  EXPECT_FALSE(StartAt(198));
  EXPECT_THAT(Boxes(), ElementsAre(HasSubstr("Symbol")));
  EXPECT_TRUE(session.BarDate.empty() && !run.setup_locked);
  run.symbol = "ABC";
  ledger.ForWriting().Execute("ALTER TABLE Away RENAME TO Runs");
  PauseIn(197);
  EXPECT_TRUE(StartAt(196));
  EXPECT_EQ(session.BarIndex, 198);
  // The trader clicks "Play" again in the box of a run that could not begin.
  outside.events.SetOnPending(nullptr);
  ledger.ForWriting().Execute("ALTER TABLE Runs RENAME TO Away");
  outside.boxes.on_show = [this] {
    ledger.ForWriting().Execute("ALTER TABLE Away RENAME TO Runs");
    control.Continue();
  };
  control.Continue();
  EXPECT_EQ(session.BarIndex, 199);
  EXPECT_EQ(session.StopRequested, 0) << "the run that began has not been paused";
  LedgerClose(ledger);
  EXPECT_TRUE(StartAt(198)) << "without a ledger a run replays all the same";
}

// The first bars of the series are gone, and the panel was closed over a holding of each side.
TEST_F(RunControlTest, AChangedSeriesMovesEveryBarOfAResumedSession) {
  PauseIn(100);
  StartAt(60);
  for (const char* position : {"Long", "Short"}) {
    LedgerRows{ledger}.Order(10, position, 1, 100, 1, 0, 1000);
    LedgerWritePlan(ledger, {.session = 1, .order = {1, *position == 'L' ? 1 : 2}, .stop = 90});
  }
  const LedgerMoment before = LedgerReadSession(ledger, 1).moment;
  std::vector<Bar> bars = DailyBars(200);
  bars.erase(bars.begin(), bars.begin() + 5);
  Store("ABC", bars);
  outside.boxes.answers = {0};
  const auto choice = RunChooser(session, run, platform, ledger, cache).Session(1);
  ASSERT_TRUE(choice && control.Claim(*choice) && control.Start());
  EXPECT_EQ(session.BarIndex, before.bar - 5);
  EXPECT_EQ(session.NewestShownBar, before.newest_shown - 5);
  EXPECT_EQ(session.FirstShownBar, before.first_shown - 5);
  EXPECT_TRUE(session.Plans.Orders().empty());
}

// Of two marked bars only the first has an order within its bars: at the very last one.
TEST_F(RunControlTest, ACardShowsWhatWasDoneThenAndNothingOfTheCardBefore) {
  PauseIn(150);
  StartAt(60);
  CardMaker maker(ledger, cache, outside.clock, true);
  for (const int bar : {80, 101}) {
    session.BarIndex = static_cast<std::int16_t>(bar);
    EXPECT_TRUE(maker.MarkBar(session, {}));
  }
  const int last = 79 + CardPlay::kBars;
  LedgerRows{ledger}.Order(10, "Long", 1, 100, 1, 0, 1000);
  ledger.ForWriting().Execute("UPDATE Details SET BarIndex = " + std::to_string(last));
  control.EndSession(1);
  EXPECT_EQ(LedgerReadTrades(ledger).at(0).closes.size(), 152U - 59) << "kept to the newest bar";
  CardPlay play(session, platform, ledger, cache, control);
  for (const LedgerCard& card : LedgerCards(ledger)) {
    ASSERT_TRUE(play.Show(card) && play.Decide({}));
    EXPECT_EQ(play.Then().has_value(), card.id == 1);
    EXPECT_EQ(session.EarlierOrders.size(), card.id == 1 ? 1U : 0U);
    play.Leave();
  }
}

TEST_F(RunControlTest, ASessionThatIsLeftWhileItsFeedWaitsFeedsNoMore) {
  const std::function<void()> ways[] = {[&] { control.EndSession(session.SessionNumber); },
                                        [&] { control.ForgetSession(session.SessionNumber); }};
  for (const auto& leave : ways) {
    outside.events.SetOnPending([&] {
      if (session.BarIndex != 65 || session.Preparing) return;
      outside.events.Schedule(std::chrono::milliseconds(500), [&] {
        if (control.Feeding()) leave();
      });
    });
    StartAt(60);
    EXPECT_TRUE(session.BarDate.empty());
    EXPECT_FALSE(control.Feeding());
  }
}

TEST(Delay, OnlySecondsThatTheClockCanHold) {
  const std::tuple<const char*, const char*, int> cases[] = {
      {"0", "0", 0},        {"10", "10", 10000},     {"32", "32", 32000},     {"33", "32", 32000},
      {"1e9", "32", 32000}, {"", "3", 3000},         {"abc", "3", 3000},      {"2.5", "2.5", 2500},
      {"0.2", "0.2", 200},  {"32.001", "32", 32000}, {"0.0001", "0.0001", 1}, {"-1", "3", 3000},
      {"-0", "-0", 0},      {"5.0", "5.0", 5000}};
  for (const auto& [text, usable, milliseconds] : cases) {
    EXPECT_EQ(UsableDelay(text), usable) << text;
    EXPECT_EQ(DelayMilliseconds(text), milliseconds) << text;
  }
  EXPECT_EQ(DelaySeconds(200), "0.2");
}

TEST_F(RunControlTest, ADelayOfZeroIsASecondAndChangesTakeEffectAtOnce) {
  run.delay = "0";
  std::vector<long> moments;
  outside.events.SetOnPending([&] {
    moments.push_back(static_cast<long>(outside.events.Now().count()));
    if (moments.size() == 3) session.RefreshDelay = 10000;
  });
  StartAt(195);
  ASSERT_EQ(moments.size(), 5U);
  EXPECT_EQ(moments[1] - moments[0], 1000);
  EXPECT_EQ(moments[4] - moments[3], 10000);
  run.delay = "";
  PauseIn(199);
  StartAt(198);
  EXPECT_EQ(run.delay, "3");
}

TEST_F(RunControlTest, NoStepIsMadeInAnotherSeriesOrABrokenStore) {
  const auto steps = {&RunControl::GoNext, &RunControl::GoFastForward, &RunControl::GoPrevious,
                      &RunControl::GoFastRewind, &RunControl::Continue};
  PauseIn(100);
  StartAt(90);
  session.Symbol = "FAST";
  run.interval = "15";
  for (const auto step : steps) {
    Boxes().clear();
    (control.*step)();
    EXPECT_THAT(Boxes(), ElementsAre(HasSubstr("bars are ABC (D), not FAST (15)")));
    EXPECT_EQ(session.BarIndex, 101);
  }
  EXPECT_EQ(Runs().size(), 1U) << "Play has begun no run";
  session.Symbol = "abc";
  run.interval = "D";
  control.GoNext();
  EXPECT_EQ(session.BarIndex, 102);

  for (const char* index : {"MASTER", "EMASTER", "XMASTER"}) {
    std::filesystem::remove(std::filesystem::path(store) / index);
  }
  for (const auto step : steps) {
    Boxes().clear();
    (control.*step)();
    EXPECT_EQ(session.BarIndex, 102);
    const bool feeds = step == &RunControl::Continue;
    EXPECT_THAT(Boxes(), ElementsAre(EndsWith(feeds ? "feed stopped." : "step was not made.")));
  }
  EXPECT_EQ(run.shown, RecordedRun::Shown::kEnded);
  EXPECT_FALSE(control.Feeding());
}

}  // namespace
}  // namespace velumar
