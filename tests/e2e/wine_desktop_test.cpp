#include <sys/wait.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

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
    ASSERT_TRUE(Eventually([&] { return Find(setup).has_value(); }, 90)) << "no setup window";
    Sleep(3000);  // it slides in
  }
  // Ends all programs of the wine prefix.
  void TearDown() override {
    if (desktop == 0) return;
    OutputOf("/usr/lib/wine/wineserver64 -k");
    waitpid(desktop, nullptr, 0);
  }

  static int StoreBars() {
    return BarsOf(Variable("VELUMAR_USER_FOLDER") + "/samples/Simulate", "ALBRUN");
  }

  pid_t desktop = 0;
};

// The ledger is checked by scripts/test-windows, which compares it before and after an update.
TEST_F(WineTrader, PlaysStepsTradesAndQuits) {
  ClickOn(setup, setup.Image3);
  ASSERT_TRUE(Eventually([&] { return StoreBars() > 0; }, 60)) << "the store is written";
  const int begun = StoreBars();
  ASSERT_TRUE(Eventually([&] { return StoreBars() >= begun + 3; }, 60)) << "bars are fed";
  ClickOn(navigator, navigator.Image4);
  Sleep(6000);  // the last bar of the feed
  const int paused = StoreBars();
  ClickOn(navigator, navigator.Image1);
  EXPECT_TRUE(Eventually([&] { return StoreBars() == paused + 1; })) << "a step by mouse";
  Sleep(2500);  // the charts are refreshed
  ClickOn(panel, panel.imgLong);

  // Under wine the first click on the chart raises it, and the second gives it the keys.
  for (int click = 0; click < 2; ++click) {
    hand.ClickAt(800, 400);
    Sleep(1000);
  }
  hand.Press("Right");
  EXPECT_TRUE(Eventually([&] { return StoreBars() == paused + 2; })) << "a step by a chart's key";
  Sleep(2500);
  ClickOn(panel, panel.imgGraph);
  Sleep(3000);
  hand.Press("Escape");
  Sleep(1000);

  ClickOn(navigator, navigator.Image5);
  ASSERT_TRUE(Eventually([&] { return Find(setup).has_value(); }, 30)) << "back to the setup";
  Sleep(3000);
  ClickOn(setup, setup.Image5);
  EXPECT_TRUE(Eventually([&] { return !Find(setup); }, 30)) << "quits";
}

}  // namespace
}  // namespace velumar
