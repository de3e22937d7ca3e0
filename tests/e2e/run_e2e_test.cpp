#include "e2e/trader_fixture.h"

namespace velumar {
namespace {

using RunE2e = TraderFixture;

TEST_F(RunE2e, ATraderPlaysStepsPausesOpensASecondChartAndReturns) {
  ClickOn(setup, setup.Image3);
  ASSERT_TRUE(Eventually([&] { return ChartBars() >= kStartBar; }, 60)) << "the chart opens";
  ASSERT_TRUE(Eventually([&] { return ChartBars() >= kStartBar + 5; }, 40)) << "five bars come";
  EXPECT_EQ(State()["chart"]["symbol"], "ABC");

  ClickOn(navigator, navigator.Image4);
  Sleep(4000);  // the bar that still comes
  const int paused = StoreBars();
  EXPECT_TRUE(Eventually([&] { return StandsOn(paused); }));
  EXPECT_LE(paused, kStartBar + 12);

  for (const StepByHand& step : StepsFrom(paused)) {
    ClickOn(navigator, step.button);
    EXPECT_TRUE(Eventually([&] { return StandsOn(step.bars); }))
        << step.button.Name() << ": chart " << ChartBars() << ", store " << StoreBars();
    Sleep(300);
  }

  // A second chart of the same store, opened by hand.
  hand.Activate("MetaStock");
  hand.Press("alt+f");
  hand.Press("o");
  Sleep(700);
  hand.Type(data + "/Simulate");
  hand.Press("Return");
  Sleep(300);
  hand.Type("ABC");
  hand.Press("Return");
  ASSERT_TRUE(Eventually([&] { return State()["charts"] == 2; })) << State();
  ClickOn(navigator, navigator.txtRefresh);
  hand.Press("ctrl+a");
  hand.Type("2");
  const long refreshed = Refreshes();
  const auto active = State()["active"];
  ClickOn(navigator, navigator.Image1);
  EXPECT_TRUE(Eventually([&] { return Refreshes() >= refreshed + 2; })) << "both are refreshed";
  EXPECT_TRUE(Eventually([&] { return StandsOn(paused + 1); }));
  EXPECT_TRUE(Eventually([&] { return State()["active"] == active; })) << "the ring is closed";

  ClickOn(navigator, navigator.Image5);
  ASSERT_TRUE(Eventually([&] { return Find(setup).has_value(); }));
  Sleep(2500);
  ClickOn(setup, setup.Image5);
  EXPECT_TRUE(Eventually([&] { return program->Ended(); }));
  EXPECT_EQ(program->ExitCode(), 0);
}

TEST_F(RunE2e, AnotherStartBringsTheRunningOneToTheFront) {
  RunningProgram another(scratch.Path(), scratch.Sub("another"));
  ASSERT_TRUE(Eventually([&] { return another.Ended(); }, 10));
  EXPECT_EQ(another.ExitCode(), 0);
  EXPECT_TRUE(Find(setup).has_value());
  EXPECT_TRUE(Eventually([&] { return hand.FrontTitle().rfind("Velumar", 0) == 0; }));
  EXPECT_FALSE(program->Ended());
}

}  // namespace
}  // namespace velumar
