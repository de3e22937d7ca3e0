#include <cstdlib>

#include "e2e/trader_fixture.h"

namespace velumar {
namespace {

// The windows in a trader's hands, at the usual size of a pixel and at twice that.
class WindowsE2e : public TraderFixture, public testing::WithParamInterface<int> {
 protected:
  void SetUp() override {
    setenv("QT_SCALE_FACTOR", std::to_string(GetParam()).c_str(), 1);
    hand.SetScale(GetParam());
    std::filesystem::create_directories(PICTURES_FOLDER);
    TraderFixture::SetUp();
  }
  void TearDown() override {
    program.reset();
    unsetenv("QT_SCALE_FACTOR");
  }

  void PressTimes(int times, const std::string& key) {
    for (int i = 0; i < times; ++i) hand.Press(key);
  }
  // For people to look at.
  void Look(const std::string& name) {
    hand.Look(PICTURES_FOLDER "/" + name + "-" + std::to_string(GetParam()) + "00.png");
  }
  // From the path through all boxes to the start button.
  void StartByKeys() {
    PressTimes(2, "Tab");
    hand.Press("ctrl+a");
    hand.Type("made");  // a word of its name
    Sleep(300);
    hand.Press("Down");
    hand.Press("Return");
    Look("choice");
    PressTimes(10, "Tab");
    Look("setup");
    hand.Press("Return");
  }
  // Where the slide ends, a step of it may be left out.
  void ExpectNear(const std::optional<ScreenRect>& now, const ScreenRect& before) {
    ASSERT_TRUE(now);
    EXPECT_EQ(now->x, before.x);
    EXPECT_NEAR(now->y, before.y, 4 * GetParam());
  }
};

TEST_P(WindowsE2e, ARunByKeysAloneAndWindowsThatStayWhereTheyWerePut) {
  const auto setup_place = Find(setup);
  ASSERT_TRUE(setup_place);
  StartByKeys();
  ASSERT_TRUE(Eventually([&] { return ChartBars() >= kStartBar + 1; }, 60)) << "the chart opens";
  auto window = Find(navigator);
  ASSERT_TRUE(window);
  hand.Activate(*window);
  hand.Press("space");
  Sleep(4000);  // the bar that still comes
  const int paused = StoreBars();
  hand.Press("Right");
  EXPECT_TRUE(Eventually([&] { return StandsOn(paused + 1); }));
  Look("run");

  // A slider that was reached by Tab keeps its arrows.
  hand.Press("Tab");
  hand.Press("shift+Tab");
  PressTimes(10, "Left");
  EXPECT_TRUE(Eventually([&] { return std::abs(hand.Opacity(*window) - 200 / 255.0) < 0.01; }))
      << hand.Opacity(*window);
  EXPECT_EQ(StoreBars(), paused + 1);
  hand.Drag(*window, 60, 900, 130, -90);
  const auto moved = Find(navigator);
  ASSERT_TRUE(moved);
  EXPECT_EQ(moved->x, window->x + 130);
  EXPECT_EQ(moved->y, window->y - 90);
  hand.Tap(*moved, 60, 900);
  hand.PointAt(moved->x + 300, moved->y - 200);
  Sleep(500);
  EXPECT_EQ(Find(navigator)->x, moved->x) << "a tap takes no window along";

  hand.Activate(*moved);
  PressTimes(2, "Tab");
  hand.Press("Return");
  ASSERT_TRUE(Eventually([&] { return Find(setup).has_value(); }));
  Sleep(2500);
  ExpectNear(Find(setup), *setup_place);
  Look("return");
  hand.Press("Escape");
  hand.Press("alt+F4");
  ASSERT_TRUE(Eventually([&] { return program->Ended(); })) << "the window closes by keys";
  EXPECT_EQ(program->ExitCode(), 0);

  program.reset();
  StartProgram();
  ExpectNear(Find(setup), *setup_place);
  PressTimes(12, "Tab");
  hand.Press("Return");
  ASSERT_TRUE(Eventually([&] { return Find(panel).has_value(); }, 60));
  Sleep(3000);
  ExpectNear(Find(navigator), *moved);
  EXPECT_NEAR(hand.Opacity(*Find(navigator)), 200 / 255.0, 0.01);
  const auto below = Find(panel);
  ASSERT_TRUE(below);
  EXPECT_EQ(below->x, moved->x) << "the panel follows the navigator's kept place";
}

INSTANTIATE_TEST_SUITE_P(Scales, WindowsE2e, testing::Values(1, 2));

}  // namespace
}  // namespace velumar
