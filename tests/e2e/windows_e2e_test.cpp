#include <cstdlib>

#include "e2e/trader_fixture.h"

namespace velumar {
namespace {

// The windows at 100 and 200 %.
class WindowsE2e : public TraderFixture, public testing::WithParamInterface<int> {
 protected:
  void SetUp() override {
    setenv("QT_SCALE_FACTOR", std::to_string(GetParam()).c_str(), 1);
    hand.SetScale(GetParam());
    TraderFixture::SetUp();
  }
  void TearDown() override {
    program.reset();
    unsetenv("QT_SCALE_FACTOR");
  }

  void PressTimes(int times, const std::string& key) {
    for (int i = 0; i < times; ++i) hand.Press(key);
  }
  // From the path box through all boxes to the start button.
  void StartByKeys() {
    PressTimes(2, "Tab");
    hand.Press("ctrl+a");
    hand.Type("made");  // a word of its name
    Sleep(300);
    hand.Press("Down");
    hand.Press("Return");
    PressTimes(10, "Tab");
    hand.Press("Return");
  }
  // The slide may end a step early.
  void ExpectNear(const std::optional<ScreenRect>& now, const ScreenRect& before) {
    ASSERT_TRUE(now);
    EXPECT_EQ(now->x, before.x);
    EXPECT_NEAR(now->y, before.y, 4 * GetParam());
  }
};

TEST_P(WindowsE2e, ARunByKeysAloneAndWindowsThatKeepTheirPlace) {
  const auto setup_place = Find(setup);
  ASSERT_TRUE(setup_place);
  StartByKeys();
  WaitForChart();
  const auto window = Find(navigator);
  ASSERT_TRUE(window);
  hand.Activate(*window);
  hand.Press("space");
  const int paused = BarsAfterPause();
  hand.Press("Right");
  EXPECT_TRUE(Shows(paused + 1));

  hand.Drag(*window, 60, 900, 130, -90);
  const auto moved = Find(navigator);
  ASSERT_TRUE(moved);
  EXPECT_EQ(moved->x, window->x + 130);
  EXPECT_EQ(moved->y, window->y - 90);
  hand.Tap(*moved, 60, 900);
  hand.PointAt(moved->x + 300, moved->y - 200);
  Sleep(500);
  EXPECT_EQ(Find(navigator)->x, moved->x) << "a tap does not drag the window";

  hand.Activate(*moved);
  PressTimes(2, "Tab");
  hand.Press("Return");
  ASSERT_TRUE(Eventually([&] { return Find(setup).has_value(); }));
  Sleep(2500);
  ExpectNear(Find(setup), *setup_place);
  hand.Press("Escape");
  hand.Press("alt+F4");
  ASSERT_TRUE(Eventually([&] { return program->Ended(); })) << "Alt+F4 quits";

  program.reset();
  StartProgram();
  ExpectNear(Find(setup), *setup_place);
  PressTimes(12, "Tab");
  hand.Press("Return");
  ASSERT_TRUE(Eventually([&] { return Find(panel).has_value(); }, 60));
  Sleep(3000);
  ExpectNear(Find(navigator), *moved);
  EXPECT_EQ(Find(panel)->x, moved->x) << "the panel opens below the navigator";
}

INSTANTIATE_TEST_SUITE_P(Scales, WindowsE2e, testing::Values(1, 2));

}  // namespace
}  // namespace velumar
