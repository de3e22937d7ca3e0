#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <memory>

#include "e2e/trader_hand.h"
#include "e2e/wine_programs.h"

namespace velumar {
namespace {

namespace fs = std::filesystem;

// A trader at a Windows machine on which scripts/test-windows has just installed Velumar.
class WineTrader : public TraderHand {
 protected:
  void SetUp() override {
    if (std::getenv("VELUMAR_INSTALLED") == nullptr) {
      GTEST_SKIP() << "takes over mouse and keys: scripts/test-windows runs it";
    }
    fs::create_directories(PICTURES_FOLDER);
    desktop = std::make_unique<WineDesktop>(Folder("VELUMAR_INSTALLED") / "velumar.exe");
    ASSERT_TRUE(Eventually([&] { return Find(setup).has_value(); }, 90)) << "the window opens";
    Sleep(3000);  // it slides in
  }

  static fs::path Folder(const char* variable) {
    const char* const folder = std::getenv(variable);
    return folder == nullptr ? fs::path() : fs::path(folder);
  }
  int StoreBars() {
    return BarsOf(Folder("VELUMAR_USER_FOLDER") / "samples" / "Simulate", "ALBRUN");
  }
  // The windows come back when the charts have been refreshed.
  bool StandsOn(int bars) {
    const bool stands = Eventually([&] { return StoreBars() == bars; });
    Sleep(2500);
    return stands;
  }
  void Look(const std::string& name) { hand.Look(PICTURES_FOLDER "/windows-" + name + ".png"); }

  bool RowsAre(std::size_t count) {
    const std::string program = WindowsPath(Folder("VELUMAR_INSTALLED") / "velumar-cli.exe");
    const std::string ledger = WindowsPath(Folder("VELUMAR_USER_FOLDER") / "Portfolio.mdb");
    const std::string command = "'" + program + "' ledger '" + ledger + "' --csv";
    return Eventually([&] { return WineAnswer(command).size() == count + 1; });  // and a header
  }

  std::unique_ptr<WineDesktop> desktop;
};

TEST_F(WineTrader, PlaysStepsTradesAndEnds) {
  ClickOn(setup, setup.Image3);
  ASSERT_TRUE(Eventually([&] { return StoreBars() > 0; }, 60)) << "the store is written";
  const int begun = StoreBars();
  ASSERT_TRUE(Eventually([&] { return StoreBars() >= begun + 3; }, 60)) << "bars are fed";
  ClickOn(navigator, navigator.Image4);
  Sleep(6000);  // the bar in hand
  const int paused = StoreBars();
  for (const StepByHand& step : StepsFrom(paused)) {
    ClickOn(navigator, step.button);
    EXPECT_TRUE(StandsOn(step.bars)) << step.button.Name() << ": " << StoreBars();
  }
  ClickOn(panel, panel.imgLong);
  EXPECT_TRUE(RowsAre(1)) << "long with the mouse";

  // Under wine the first click on the chart raises it, and the second gives it the keys.
  for (int click = 0; click < 2; ++click) {
    hand.ClickAt(800, 400);
    Sleep(1000);
  }
  hand.Press("shift+l");
  EXPECT_TRUE(RowsAre(2)) << "offset by a key typed to the chart";
  hand.Press("Right");
  EXPECT_TRUE(StandsOn(paused + 1)) << "a step by a key typed to the chart";
  Look("run");
  ClickOn(panel, panel.imgGraph);
  Sleep(3000);
  Look("results");
  hand.Press("Escape");
  Sleep(1000);

  ClickOn(navigator, navigator.Image5);
  ASSERT_TRUE(Eventually([&] { return Find(setup).has_value(); }, 30)) << "back to the setup";
  Sleep(3000);
  ClickOn(setup, setup.Image5);
  ASSERT_TRUE(Eventually([] { return !WineDesktop::Runs("velumar.exe"); }, 30)) << "it ends";
  EXPECT_TRUE(WineDesktop::Runs("MSWIN.EXE")) << "the chart program stays open";
}

}  // namespace
}  // namespace velumar
