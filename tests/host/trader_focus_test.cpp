#include "host/trader_focus.h"

#include <gtest/gtest.h>

#include <optional>

#include "platform/virtual_platform.h"

namespace velumar {
namespace {

constexpr WindowId kOwn = RecordingChart::kOwnWindow;
constexpr WindowId kChart = RecordingChart::kWindow;
constexpr WindowId kOther = RecordingChart::kOtherWindow;
constexpr WindowId kNone = 0;

struct TraderFocusTest : testing::Test {
  bool AtRunIn(WindowId window) {
    desk.focused = window;
    trader.Look();
    return trader.AtRun();
  }

  RecordingChart desk;
  TraderFocus trader{desk};
};

TEST_F(TraderFocusTest, OnlyAChoiceBetweenOpenWindowsCounts) {
  for (int visit = 0; visit < 2; ++visit) {
    EXPECT_TRUE(AtRunIn(kOwn));
    EXPECT_FALSE(AtRunIn(kOther));
  }
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
  const std::tuple<const char*, WindowId, std::optional<WindowId>, WindowId, WindowId> cases[] = {
      {"a window of ours", kOwn, {}, kNone, kOwn},
      {"another program", kOther, {}, kNone, kOther},
      {"nobody", kNone, {}, kNone, kOwn},
      {"the trader turns to another program", kOwn, kOther, kNone, kOther},
      {"and closes it again", kOwn, kOther, kOther, kOwn}};
  for (const auto& [story, before, turn, hidden, after] : cases) {
    RecordingChart windows;
    TraderFocus focus(windows);
    windows.focused = before;
    {
      const FocusReturn returning(windows, focus);
      if (turn) {
        windows.focused = *turn;
        focus.Look();
      }
      windows.hidden = hidden;
      windows.BringToFront("MetaStock");
      focus.Moved();
    }
    EXPECT_EQ(windows.focused, after) << story;
  }
}

}  // namespace
}  // namespace velumar
