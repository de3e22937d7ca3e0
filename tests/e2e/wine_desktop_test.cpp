#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>

#include "e2e/processes.h"
#include "e2e/trader_hand.h"

namespace velumar {
namespace {

namespace fs = std::filesystem;

std::string Variable(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? "" : value;
}

// "/tmp/x" as Windows programs name it.
std::string WindowsPath(const fs::path& path) {
  std::string name = "Z:" + path.string();
  std::ranges::replace(name, '/', '\\');
  return name;
}

// Others may run the same program in a prefix of theirs.
bool Runs(const std::string& program) {
  return !ProcessesOf(program, "WINEPREFIX=" + Variable("WINEPREFIX")).empty();
}

// A program on a virtual desktop of wine. All programs of the prefix end with it.
class WineDesktop {
 public:
  explicit WineDesktop(const fs::path& program) : pid_(fork()) {
    if (pid_ != 0) return;
    const std::string wine = Variable("VELUMAR_WINE");
    // Wine complains there about each drive without a label.
    std::freopen("/dev/null", "w", stderr);
    execl(wine.c_str(), wine.c_str(), "explorer", "/desktop=velumar,1600x1000",
          WindowsPath(program).c_str(), nullptr);
    _exit(127);
  }
  ~WineDesktop() {
    OutputOf("/usr/lib/wine/wineserver64 -k");
    waitpid(pid_, nullptr, 0);
  }
  WineDesktop(const WineDesktop&) = delete;
  WineDesktop& operator=(const WineDesktop&) = delete;

 private:
  pid_t pid_;
};

// A trader at a Windows machine on which scripts/test-windows has just installed Velumar.
class WineTrader : public TraderHand {
 protected:
  void SetUp() override {
    if (Variable("VELUMAR_INSTALLED").empty()) {
      GTEST_SKIP() << "takes over mouse and keys: scripts/test-windows runs it";
    }
    fs::create_directories(PICTURES_FOLDER);
    desktop =
        std::make_unique<WineDesktop>(fs::path(Variable("VELUMAR_INSTALLED")) / "velumar.exe");
    ASSERT_TRUE(Eventually([&] { return Find(setup).has_value(); }, 90)) << "the window opens";
    Sleep(3000);  // it slides in
  }

  static int StoreBars() {
    return BarsOf(Variable("VELUMAR_USER_FOLDER") + "/samples/Simulate", "ALBRUN");
  }
  // The windows come back when the charts have been refreshed.
  bool StandsOn(int bars) {
    const bool stands = Eventually([&] { return StoreBars() == bars; });
    Sleep(2500);
    return stands;
  }
  void Look(const std::string& name) { hand.Look(PICTURES_FOLDER "/windows-" + name + ".png"); }

  bool RowsAre(std::size_t count) {
    const std::string command =
        "timeout 60 " + Variable("VELUMAR_WINE") + " '" +
        WindowsPath(Variable("VELUMAR_INSTALLED") + "/velumar-cli.exe") + "' ledger '" +
        WindowsPath(Variable("VELUMAR_USER_FOLDER") + "/Portfolio.mdb") + "' --csv";
    return Eventually([&] { return OutputOf(command).size() == count + 1; });  // and a header
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
  ASSERT_TRUE(Eventually([] { return !Runs("velumar.exe"); }, 30)) << "it ends";
  EXPECT_TRUE(Runs("MSWIN.EXE")) << "the chart program stays open";
}

}  // namespace
}  // namespace velumar
