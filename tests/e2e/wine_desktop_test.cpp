#include <sys/wait.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "e2e/trader_hand.h"

namespace velumar {
namespace {

std::string Variable(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? "" : value;
}

// A trader at a Windows machine on which scripts/test-windows has just installed Velumar, on a
// virtual desktop of wine.
struct WineTrader : TraderHand {
  void SetUp() override {
    if (Variable("VELUMAR_INSTALLED").empty()) {
      GTEST_SKIP() << "takes over mouse and keyboard: scripts/test-windows runs it";
    }
    const std::string wine = Variable("VELUMAR_WINE");
    std::string program = "Z:" + Variable("VELUMAR_INSTALLED") + "/velumar.exe";
    std::ranges::replace(program, '/', '\\');
    desktop = fork();
    if (desktop == 0) {
      // Wine complains about each drive without a label.
      std::freopen("/dev/null", "w", stderr);
      execl(wine.c_str(), wine.c_str(), "explorer", "/desktop=velumar,1600x1000", program.c_str(),
            nullptr);
      _exit(127);
    }
    ASSERT_TRUE(ComesToRest(setup)) << "no setup window";
  }
  // Ends all programs of the wine prefix.
  void TearDown() override {
    if (desktop == 0) return;
    OutputOf("/usr/lib/wine/wineserver64 -k");
    waitpid(desktop, nullptr, 0);
  }

  // Windows slide in from below the screen, slowly on a busy machine.
  bool ComesToRest(const Form& form) const {
    constexpr int kScreenHeight = 1000;
    std::optional<ScreenRect> before;
    return Eventually(
        [&] {
          const std::optional<ScreenRect> now = Find(form);
          const bool rests = now && before && now->x == before->x && now->y == before->y;
          before = now;
          if (!rests) Sleep(1500);
          return rests && now->y + now->height <= kScreenHeight;
        },
        kPatience);
  }
  // All visible windows: that of the results has no title to find it by.
  static std::size_t VisibleWindows() {
    return OutputOf("xdotool search --onlyvisible --class velumar").size();
  }
  static int StoreBars() {
    return BarsOf(Variable("VELUMAR_USER_FOLDER") + "/samples/Simulate", "ALBRUN");
  }
  static bool HasBars(int bars) {
    return Eventually([&] { return StoreBars() >= bars; }, kPatience);
  }
  // Returns the bars in the store once the last bar of the feed has arrived.
  static int BarsAtRest() {
    int bars = -1;
    Eventually(
        [&] {
          const int before = std::exchange(bars, StoreBars());
          if (bars != before) Sleep(6000);
          return bars == before && bars > 0;
        },
        kPatience);
    return bars;
  }

  static constexpr double kPatience = 90;  // seconds

  pid_t desktop = 0;
};

// The ledger is checked by scripts/test-windows, which compares it before and after an update.
TEST_F(WineTrader, PlaysStepsTradesAndQuits) {
  ClickOn(setup, setup.Image3);
  ASSERT_TRUE(HasBars(1)) << "the store is written";
  ASSERT_TRUE(HasBars(StoreBars() + 3)) << "bars are fed";
  ClickOn(navigator, navigator.Image4);
  const int paused = BarsAtRest();
  ClickOn(navigator, navigator.Image1);
  ASSERT_TRUE(HasBars(paused + 1)) << "a step by mouse";
  EXPECT_EQ(BarsAtRest(), paused + 1);
  ClickOn(panel, panel.imgLong);

  // Under wine the first click on the chart raises it, and the second gives it the keys.
  for (int click = 0; click < 2; ++click) {
    hand.ClickAt(800, 400);
    Sleep(1000);
  }
  hand.Press("Right");
  ASSERT_TRUE(HasBars(paused + 2)) << "a step by a chart's key";
  EXPECT_EQ(BarsAtRest(), paused + 2);
  const std::size_t windows = VisibleWindows();
  ClickOn(panel, panel.imgGraph);
  ASSERT_TRUE(Eventually([&] { return VisibleWindows() > windows; }, kPatience)) << "results";
  hand.Press("Escape");
  EXPECT_TRUE(Eventually([&] { return VisibleWindows() == windows; }, kPatience)) << "results";

  ClickOn(navigator, navigator.Image5);
  ASSERT_TRUE(ComesToRest(setup)) << "back to the setup";
  ClickOn(setup, setup.Image5);
  EXPECT_TRUE(Eventually([&] { return !Find(setup); }, kPatience)) << "quits";
}

}  // namespace
}  // namespace velumar
