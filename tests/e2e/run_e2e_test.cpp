#include "e2e/trader_fixture.h"

namespace velumar {
namespace {

// With keys, as any chart program is driven.
class RunE2e : public TraderFixture {
 protected:
  RunE2e() { chart_link = "keys"; }
};

TEST_F(RunE2e, PlayPauseOpenASecondChartAndStep) {
  ClickOn(setup, setup.Image3);
  WaitForChart();
  ASSERT_TRUE(Eventually([&] { return ChartBars() >= kStartBar + 5; }, 40)) << "the feed plays";
  ClickOn(navigator, navigator.Image4);
  const int paused = BarsAfterPause();
  EXPECT_TRUE(Shows(paused));
  EXPECT_LE(paused, kStartBar + 12);

  // A second chart of the same store, opened manually.
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
  EXPECT_TRUE(Eventually([&] { return Refreshes() >= refreshed + 2; })) << "refreshes both";
  EXPECT_TRUE(Shows(paused + 1));
  EXPECT_TRUE(Eventually([&] { return State()["active"] == active; })) << "the same chart in front";
}

TEST_F(RunE2e, ASecondStartBringsTheFirstToTheFront) {
  RunningProgram second(scratch.Path(), scratch.Sub("second"));
  ASSERT_TRUE(Eventually([&] { return second.Ended(); }, 10));
  EXPECT_EQ(second.ExitCode(), 0);
  EXPECT_TRUE(Find(setup).has_value());
  EXPECT_TRUE(Eventually([&] { return hand.FrontTitle().starts_with("Velumar"); }));
  EXPECT_FALSE(program->Ended());
}

}  // namespace
}  // namespace velumar
