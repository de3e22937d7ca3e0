#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>

#include "e2e/trader_hand.h"
#include "e2e/wine_programs.h"

namespace velumar {
namespace {

namespace fs = std::filesystem;

constexpr const char* kSettings = "HKCU\\Software\\Velumar\\Settings";
// A place of the chart where nothing answers to a click.
constexpr int kNowhereX = 800;
constexpr int kNowhereY = 400;

// A trader at a Windows machine on which Velumar was just installed: scripts/test-windows installs
// it and tells where. What stands in store, ledger and registry is held against what was done.
class WineTrader : public TraderHand {
 protected:
  void SetUp() override {
    if (std::getenv("VELUMAR_INSTALLED") == nullptr) {
      GTEST_SKIP() << "takes over mouse and keys: scripts/test-windows runs it";
    }
    fs::create_directories(PICTURES_FOLDER);
    StartProgram();
  }

  static fs::path Folder(const char* variable) {
    const char* const folder = std::getenv(variable);
    return folder == nullptr ? fs::path() : fs::path(folder);
  }

  void StartProgram() {
    desktop.reset();
    desktop = std::make_unique<WineDesktop>(Folder("VELUMAR_INSTALLED") / "velumar.exe");
    ASSERT_TRUE(Eventually([&] { return Find(setup).has_value(); }, 90)) << "the window comes";
    WaitUntilStill(setup);
  }
  // Windows slide: a click meanwhile takes hold of another place than was aimed at.
  void WaitUntilStill(const Form& form) {
    int still = 0;
    int place = -1;
    EXPECT_TRUE(Eventually([&] {
      const auto window = Find(form);
      still = window && window->y == place ? still + 1 : 0;
      place = window ? window->y : -1;
      Sleep(100);
      return still >= 15;
    })) << form.Name();
  }

  int StoreBars() { return BarsOf(data / "Simulate", kSymbol); }
  // Once no bar comes any more; -1 where the feed doesn't pause.
  int BarsAtRest() {
    int bars = StoreBars();
    for (int look = 0; look < 4; ++look) {
      Sleep(4500);
      const int now = StoreBars();
      if (now == bars) return bars;
      bars = now;
    }
    return -1;
  }

  // The windows come back when the charts are refreshed.
  bool StandsOn(int bars) {
    const bool stands = Eventually([&] { return StoreBars() == bars; });
    Sleep(2500);
    return stands;
  }

  // The whole screen as it is drawn. Without a mouse over a button, it is the same again wherever
  // the run stands on the same bar.
  std::string Screen() {
    hand.PointAt(kNowhereX, kNowhereY);
    Sleep(1500);
    const std::string file = scratch.Sub("screen.ppm");
    hand.Look(file);
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  }
  void Look(const std::string& name) { hand.Look(PICTURES_FOLDER "/windows-" + name + ".png"); }

  std::vector<std::string> Ledger(const std::string& what = "") {
    const std::string program = WindowsPath(Folder("VELUMAR_INSTALLED") / "velumar-cli.exe");
    const std::string ledger = WindowsPath(Folder("VELUMAR_USER_FOLDER") / "Portfolio.mdb");
    return WineAnswer("'" + program + "' ledger '" + ledger + "' --csv " + what);
  }
  // A line of titles stands above the rows.
  bool RowsAre(std::size_t count) {
    return Eventually([&] { return Ledger().size() == count + 1; }, 20);
  }

  // A click on the chart brings it to the front, above Velumar's windows too until the next
  // refresh, as wine draws it; behind a click on one of those it takes a second one for the keys
  // there.
  void FocusChart() {
    for (int click = 0; click < 2; ++click) {
      hand.ClickAt(kNowhereX, kNowhereY);
      Sleep(1000);
    }
  }
  // By the keys that a trader of the chart program knows.
  void OpenChart() {
    FocusChart();
    hand.Press("alt+f");
    Sleep(1500);
    hand.Press("o");
    Sleep(2500);
    Look("open-dialog");
    hand.Type(WindowsPath(data / "Simulate"));
    hand.Press("Return");
    Sleep(1000);
    hand.Type(kSymbol);
    hand.Press("Return");
    Sleep(2500);
  }

  // The printed run of a trader without a printer.
  void SaveReport() {
    const std::string file = scratch.Sub("report.pdf");
    ClickOn(panel, panel.imgGraph);
    Sleep(3000);
    Look("results");
    hand.Press("alt+r");
    Sleep(2500);
    Look("save-report");
    hand.Type(WindowsPath(file));
    hand.Press("Return");
    EXPECT_TRUE(Eventually([&] { return fs::exists(file) && fs::file_size(file) > 0; }));
    Sleep(2000);
    const std::string page = PICTURES_FOLDER "/windows-report";
    EXPECT_EQ(std::system(("pdftoppm -r 60 -png '" + file + "' '" + page + "'").c_str()), 0);
    EXPECT_EQ(std::system(("pdftotext '" + file + "' - | grep -q Hindsight").c_str()), 0);
    hand.Press("Escape");
    Sleep(1000);
  }

  static constexpr const char* kSymbol = "ALBRUN";

  fs::path data = Folder("VELUMAR_USER_FOLDER") / "samples";
  std::unique_ptr<WineDesktop> desktop;
};

TEST_F(WineTrader, PlaysStepsTradesIsKilledAndFindsAllAgain) {
  Look("setup");
  ClickOn(setup, setup.Image3);
  ASSERT_TRUE(Eventually([&] { return StoreBars() > 0; }, 60)) << "the store is written";
  const int begun = StoreBars();
  ASSERT_TRUE(Eventually([&] { return WineDesktop::Runs("MSWIN.EXE"); }, 30));
  ASSERT_TRUE(Eventually([&] { return StoreBars() >= begun + 5; }, 60)) << "five bars come";
  Look("run");

  ClickOn(navigator, navigator.Image4);
  const int paused = BarsAtRest();
  ASSERT_GT(paused, 0) << "the pause button is reached, and it pauses";
  std::string before = Screen();
  for (const StepByHand& step : StepsFrom(paused)) {
    ClickOn(navigator, step.button);
    EXPECT_TRUE(Eventually([&] { return StoreBars() == step.bars; }))
        << step.button.Name() << ": " << StoreBars();
    const std::string after = Screen();
    EXPECT_TRUE(after != before) << step.button.Name() << " changes what is shown";
    before = after;
  }

  // A second chart of the same store, opened by hand; a key typed to it steps all the same.
  OpenChart();
  Look("two-charts");
  hand.Press("Right");
  EXPECT_TRUE(StandsOn(paused + 1)) << "a step by a key typed to the chart";
  ClickOn(navigator, navigator.txtRefresh);
  hand.Press("ctrl+a");
  hand.Type("2");
  hand.Press("Return");
  ClickOn(navigator, navigator.Image1);
  EXPECT_TRUE(StandsOn(paused + 2));
  Look("two-charts-on");

  ClickOn(panel, panel.imgLong);
  EXPECT_TRUE(RowsAre(1)) << "long";
  ClickOn(navigator, navigator.Image1);
  EXPECT_TRUE(StandsOn(paused + 3));
  ClickOn(panel, panel.imgOffsetLong);
  EXPECT_TRUE(RowsAre(2)) << "offset";
  FocusChart();
  hand.Press("s");
  EXPECT_TRUE(RowsAre(3)) << "short by a key typed to the chart";
  hand.Press("Right");
  EXPECT_TRUE(StandsOn(paused + 4));
  Look("traded");
  const std::vector<std::string> rows = Ledger();
  SaveReport();

  WineDesktop::Kill("velumar.exe");
  WineDesktop::Kill("MSWIN.EXE");
  StartProgram();
  EXPECT_EQ(Ledger(), rows) << "nothing is lost when the program dies";
  ClickOn(setup, setup.Image3);
  ASSERT_TRUE(Eventually([&] { return Ledger().size() == 1; }, 60)) << "a run begins empty";
  EXPECT_EQ(Ledger("--run 1"), rows) << "the archive has the one before";
  ASSERT_TRUE(Eventually([&] { return Find(navigator).has_value(); }, 60));
  ASSERT_TRUE(Eventually([&] { return StoreBars() < paused; }, 60)) << "a new store is written";
  ASSERT_TRUE(Eventually([&] { return StoreBars() >= begun + 3; }, 90)) << "bars come again";
  WaitUntilStill(navigator);
  Look("again");
  ClickOn(navigator, navigator.Image5);
  ASSERT_TRUE(Eventually([&] { return Find(setup).has_value(); }, 30)) << "back to the setup";
  WaitUntilStill(setup);
  Look("returned");
  ClickOn(setup, setup.Image5);
  ASSERT_TRUE(Eventually([] { return !WineDesktop::Runs("velumar.exe"); }, 30)) << "it ends";
  EXPECT_TRUE(WineDesktop::Runs("MSWIN.EXE")) << "the chart program stays, as for any trader";
  EXPECT_EQ(RegistryText(kSettings, "Symbol"), kSymbol);
  EXPECT_FALSE(RegistryText(kSettings, "NavTop").empty());
  EXPECT_FALSE(RegistryText(kSettings, "LastPath").empty());
  EXPECT_EQ(RegistryText("HKCU\\Software\\Equis\\MetaStock Pro 8.0\\DataPath", "LastPath"),
            RegistryText(kSettings, "LastPath"));
  EXPECT_NE(RegistryText("HKCU\\Software\\Equis\\Common\\8.0\\File Paths", "ProgramPath")
                .find("charthost"),
            std::string::npos);
}

}  // namespace
}  // namespace velumar
