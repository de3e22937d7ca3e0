#include <algorithm>
#include <random>

#include "ledger/drills.h"
#include "results/run_record.h"
#include "session/stored_bars.h"
#include "support/whole_program.h"

namespace velumar {
namespace {

// A program over two daily series that are long enough to be drawn, with a bar a second.
struct DrillTest : testing::Test {
  DrillTest() {
    IndexCache cache;
    StoreSecurity(data, {"ABC", "Alpha", -1}, DailyBars(500), cache);
    StoreSecurity(data, {"DEF", "Delta", -1}, DailyBars(600), cache);
    all.outside.settings.Save("Refresh", "1");
    all.program.Start();
    all.Setup().Combo1.UserChoose(0);
    Tick();
  }
  void Tick() {
    all.program.Tick();
    all.At(1000, [this] { Tick(); });
  }
  // Plays the first chart.
  void Begin(const char* charts, const char* bars, const char* minutes) {
    all.Setup().lnkPractice.UserClick();
    all.windows.frmPractice.cmdDrill.UserClick();
    List().txtCharts.UserType(charts);
    List().txtBars.UserType(bars);
    List().txtMinutes.UserType(minutes);
    List().cmdStart.UserClick();
  }
  // Runs an action once the chart of that session has shown so many bars.
  void OnBar(int session, int bars, std::function<void()> action) {
    all.outside.events.SetOnPending([this, session, bars, action = std::move(action)]() mutable {
      const SimSession& now = all.session;
      const bool there = !now.Preparing && now.SessionNumber == session;
      if (!there || now.BarIndex != now.FirstShownBar + bars) return;
      first_shown = now.FirstShownBar;
      std::exchange(action, [] {})();
    });
  }
  void Wait(int seconds) { all.outside.events.WaitFor(std::chrono::seconds(seconds)); }
  std::string Cell(std::size_t row, std::size_t column) {
    return List().lstDrills.Content().text(row, column);
  }
  std::vector<RunOrder> OrdersOf(int session) {
    return ReadRecord(all.ledger, LedgerScope::Session(session)).orders;
  }
  FrmDrill& List() { return all.windows.frmDrill; }
  FrmDrillChart& Chart() { return all.windows.frmDrillChart; }

  int first_shown = 0;  // of the chart; its reveal forgets it
  ScratchFolder scratch;
  std::string data = scratch.Sub("data");
  WholeProgram all{data, [this](Platform& platform) {
                     platform.ledger_file = scratch.Sub("Portfolio.mdb");
                     platform.random_seed = 7;
                   }};
};

TEST_F(DrillTest, ChartsEndByBarsOrTimeAndEveryOrderIsInTheLedger) {
  OnBar(1, 3, [this] {
    all.Panel().txtContractVol.UserType("2");
    all.Panel().imgLong.UserClick();
    all.Panel().txtContractVol.UserType("nonsense");
    EXPECT_THAT(Chart().lblStatus.Text(), testing::StartsWith("Chart 1 of 3, bar 3 of 12, 0:2"));
  });
  Begin("3", "12", "0.5");
  EXPECT_EQ(Chart().lblStatus.Text(), "Chart 1 of 3 has ended.");
  EXPECT_THAT(Chart().lblResult.Text(), HasSubstr("You have played "));
  EXPECT_THAT(Chart().lblFigures.Text(), testing::StartsWith("1 trade, "));
  const std::vector<RunOrder> orders = OrdersOf(1);
  ASSERT_EQ(orders.size(), 2U);
  EXPECT_EQ(orders[1].kind, RunOrder::Kind::kOffset);
  EXPECT_EQ(orders[1].quantity, 2) << "all that was held";
  EXPECT_EQ(orders[1].bar, first_shown + 12);

  OnBar(2, 2, [this] {
    EXPECT_EQ(Chart().lblResult.Text() + Chart().lblFigures.Text(), "") << "of the chart before";
    all.Navigator().Image4.UserClick();
  });
  Chart().cmdNext.UserClick();
  EXPECT_FALSE(all.program.Feeding()) << "paused";
  Wait(20);
  EXPECT_TRUE(all.session.HasBar(0));
  Wait(10);
  EXPECT_FALSE(all.session.HasBar(0)) << "the time was up in the pause";
  EXPECT_LT(all.session.NewestShownBar, first_shown + 12);
  EXPECT_EQ(Chart().lblFigures.Text(), "no trades");
  Wait(100);
  EXPECT_EQ(Chart().lblStatus.Text(), "Chart 2 of 3 has ended.") << "nothing starts by itself";
  EXPECT_TRUE(Chart().cmdNext.Enabled());

  OnBar(3, 1, [this] { all.Navigator().Image7.UserClick(); });
  Chart().cmdNext.UserClick();
  EXPECT_EQ(all.session.NewestShownBar, first_shown + 12) << "not 30 bars on";
  EXPECT_EQ(Chart().lblStatus.Text(), "The drill is finished.");
  EXPECT_FALSE(Chart().cmdNext.Enabled());
  EXPECT_THAT(Chart().lblAll.Text(), testing::EndsWith("rank 1 of 1"));
  Chart().cmdStop.UserClick();
  EXPECT_TRUE(all.Setup().Visible() && List().Visible());
  EXPECT_EQ(Cell(0, 1), "3");
  EXPECT_EQ(Cell(0, 3), "0:30");
  EXPECT_EQ(Cell(0, 4), "1");
  const LedgerDrill drill = LedgerDrills(all.ledger).at(0);
  EXPECT_TRUE(drill.finished);
  EXPECT_EQ(drill.sessions, (std::vector{1, 2, 3}));
  for (const LedgerPlayed& played : LedgerSessions(all.ledger)) {
    EXPECT_TRUE(played.session.ended);
    EXPECT_NE(played.session.symbol, "BLIND") << "revealed";
  }
}

TEST_F(DrillTest, WhatWasPlayedBeforeAStopCounts) {
  const auto trade_and = [this](PictureButton& step, Control& end) {
    all.Panel().ImgShort.UserClick();
    step.UserClick();
    end.UserClick();
  };
  OnBar(1, 2, [&] {
    Chart().cmdStop.UserClick();
    EXPECT_THAT(Chart().lblStatus.Text(), testing::StartsWith("Chart 1 of 1, bar 2")) << "asked";
    all.outside.boxes.answers = {0};
    trade_and(all.Navigator().Image1, Chart().cmdStop);
    all.outside.boxes.shown.clear();
  });
  Begin("1", "40", "0");
  EXPECT_EQ(Chart().lblStatus.Text(), "Stopped after 1 of 1.");
  Chart().cmdStop.UserClick();
  EXPECT_EQ(Cell(0, 1), "1 of 1, not finished");
  EXPECT_EQ(Cell(0, 4), "1");
  EXPECT_EQ(Cell(0, 9), "-") << "no rank";
  List().on_close();

  OnBar(2, 2, [&] { trade_and(all.Navigator().Image1, all.Navigator().Image5); });
  Begin("5", "40", "3");
  EXPECT_TRUE(all.outside.boxes.shown.empty()) << "no question whether to reveal it";
  EXPECT_EQ(OrdersOf(2).size(), 2U);
  EXPECT_EQ(Chart().lblStatus.Text(), "Stopped after 1 of 5.");
  Wait(300);
  EXPECT_EQ(LedgerDrills(all.ledger).size(), 2U);
}

TEST_F(DrillTest, APositionThatTheLedgerCantCloseKeepsItsChartHidden) {
  int session = 0;
  for (PictureButton* const order : {&all.Panel().imgLong, &all.Panel().ImgShort}) {
    OnBar(++session, 2, [this, order] {
      order->UserClick();
      all.ledger.ForWriting().Execute("ALTER TABLE Details RENAME TO Away");
      all.outside.boxes.on_show = [this] {
        all.ledger.ForWriting().Execute("ALTER TABLE Away RENAME TO Details");
      };
    });
    Begin("1", "12", "0");
    EXPECT_EQ(Chart().lblStatus.Text(), "Stopped after 1 of 1.");
    EXPECT_EQ(LedgerReadSession(all.ledger, session).session.symbol, "BLIND");
    EXPECT_EQ(all.session.LAccum + all.session.SAccum, 1) << "it can be resumed";
    Chart().cmdStop.UserClick();
  }
}

TEST_F(DrillTest, IsFinishedOnceTheLedgerHasItsEnd) {
  OnBar(1, 2, [this] { all.ledger.ForWriting().Execute("ALTER TABLE Drills RENAME TO Away"); });
  Begin("1", "12", "0");
  EXPECT_THAT(all.outside.boxes.shown,
              Contains(HasSubstr("The end of the drill could not be saved")));
  EXPECT_EQ(Chart().lblStatus.Text(), "Stopped after 1 of 1.");
}

TEST_F(DrillTest, NumbersThatCantBeUsedStartNothing) {
  for (const auto& [charts, bars, minutes] :
       {std::tuple("0", "40", "3"), std::tuple("5", "501", "3"), std::tuple("5", "40", "-1"),
        std::tuple("2.5", "40", "3"), std::tuple("5", "40", "soon")}) {
    Begin(charts, bars, minutes);
    EXPECT_THAT(List().lblStatus.Text(), testing::StartsWith("The number of ")) << bars;
    List().on_close();
  }
  Begin("50", "500", "600");
  EXPECT_THAT(all.outside.boxes.shown, Contains(HasSubstr("500 after it")));
  EXPECT_FALSE(all.Navigator().Visible() || Chart().Visible());
  EXPECT_TRUE(LedgerDrills(all.ledger).empty());
}

TEST_F(DrillTest, NoLaterBarIsEverInTheStore) {
  std::mt19937 random(11);
  constexpr int kBars = 33;
  int charts = 0;
  const auto check = [&] {
    charts = std::max(charts, all.session.SessionNumber);
    if (all.session.Preparing || charts == 0) return;
    int bars = 0;
    for (const SecurityInfo& security : SecuritiesOf(all.session.SimDir, all.cache)) {
      bars = std::max(bars, static_cast<int>(security.bars));
    }
    if (all.session.HasBar(0)) {
      first_shown = all.session.FirstShownBar;
      ASSERT_EQ(bars, all.session.BarIndex + 1);
      ASSERT_EQ(all.session.LastArrayIndex(), first_shown + kBars) << "not even in memory";
    }
    ASSERT_LE(bars, first_shown + kBars + 1);
  };
  all.outside.events.SetOnPending(check);
  const std::function<void()> click = [&] {
    check();
    Form2& navigator = all.Navigator();
    Form3& panel = all.Panel();
    const std::vector<Control*> buttons{&navigator.Image1,     &navigator.Image2, &navigator.Image3,
                                        &navigator.Image4,     &navigator.Image6, &navigator.Image7,
                                        &panel.imgLong,        &panel.ImgShort,   &panel.imgLong,
                                        &panel.ImgOffsetShort, &Chart().cmdNext};
    all.outside.boxes.date = 29990101;
    if (random() % 40 == 0) all.program.Keys().Press({.code = run_key::kGoTo});
    buttons[random() % buttons.size()]->UserClick();
    check();
    if (Chart().lblStatus.Text() != "The drill is finished.") {
      all.At(static_cast<int>(random() % 3000), click);
    }
  };
  all.At(3000, click);
  Begin("6", "33", "1");
  for (int i = 0; i < 2000 && Chart().lblStatus.Text() != "The drill is finished."; ++i) Wait(1);
  EXPECT_EQ(charts, 6);
  EXPECT_TRUE(LedgerDrills(all.ledger).at(0).finished);
  for (int session = 1; session <= 6; ++session) {
    double held = 0;
    for (const RunOrder& order : OrdersOf(session)) {
      const double side = order.is_long ? 1 : 1000;
      held += (order.kind == RunOrder::Kind::kEntry ? side : -side) * order.quantity.value_or(0);
    }
    EXPECT_EQ(held, 0) << session;
  }
}

}  // namespace
}  // namespace velumar
