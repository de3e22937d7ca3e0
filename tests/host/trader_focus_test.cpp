#include "host/trader_focus.h"

#include <optional>

#include "platform/virtual_platform.h"

namespace velumar {
namespace {

constexpr WindowId kOwn = RecordingChart::kOwnWindow;
constexpr WindowId kChart = RecordingChart::kWindow;
constexpr WindowId kOther = RecordingChart::kOtherWindow;
constexpr WindowId kNone = 0;

class TraderFocusTest : public testing::Test {
 protected:
  bool AtRunIn(WindowId window) {
    desk.focused = window;
    trader.Look();
    return trader.AtRun();
  }

  RecordingChart desk;
  TraderFocus trader{desk};
};

TEST_F(TraderFocusTest, OnlyAChoiceBetweenOpenWindowsCounts) {
  EXPECT_TRUE(AtRunIn(kOwn));
  EXPECT_FALSE(AtRunIn(kOther));
  EXPECT_TRUE(AtRunIn(kChart)) << "chosen while the other window is still open";
  EXPECT_FALSE(AtRunIn(kOther));
  desk.hidden = kOther;
  EXPECT_FALSE(AtRunIn(kNone));
  EXPECT_FALSE(AtRunIn(kOwn)) << "the other window has closed";
  trader.ComeToRun();
  EXPECT_TRUE(AtRunIn(kOwn)) << "a click";
}

TEST_F(TraderFocusTest, WhatTheProgramMovesDoesNotCount) {
  ASSERT_FALSE(AtRunIn(kOther));
  desk.focused = kOwn;
  trader.Moved();
  EXPECT_FALSE(AtRunIn(kOwn)) << "a box of ours";
  ASSERT_FALSE(AtRunIn(kOther));
  {
    const ScopedCounter starting = trader.ExpectChart();
    EXPECT_FALSE(AtRunIn(kChart)) << "the chart program starts";
    EXPECT_TRUE(AtRunIn(kOwn));
  }
}

// Which window has the focus, what happens, and which window has it in the end.
TEST_F(TraderFocusTest, TheFocusGoesBackToTheWindowThatHadIt) {
  const struct {
    const char* story;
    WindowId before;
    std::optional<WindowId> turn;
    WindowId hidden;
    WindowId after;
  } cases[] = {{"a window of ours", kOwn, {}, kNone, kOwn},
               {"another program", kOther, {}, kNone, kOther},
               {"nobody", kNone, {}, kNone, kOwn},
               {"the trader turns to another program", kOwn, kOther, kNone, kOther},
               {"and closes it again", kOwn, kOther, kOther, kOwn}};
  for (const auto& c : cases) {
    RecordingChart windows;
    TraderFocus focus(windows);
    windows.focused = c.before;
    {
      const FocusReturn returning(windows, focus);
      if (c.turn) {
        windows.focused = *c.turn;
        focus.Look();
      }
      windows.hidden = c.hidden;
      windows.BringToFront("MetaStock");
      focus.Moved();
    }
    EXPECT_EQ(windows.focused, c.after) << c.story;
  }
}

}  // namespace
}  // namespace velumar
