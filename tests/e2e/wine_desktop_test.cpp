#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <optional>

#include "e2e/desktop_hand.h"
#include "e2e/wine_programs.h"
#include "forms/desktop.h"
#include "support/scratch.h"

namespace velumar {
namespace {

namespace fs = std::filesystem;

constexpr const char* kChartTitle = "MetaStock";

// A trader at a Windows machine on which Velumar was just installed: scripts/test-windows installs
// it and tells where. What stands in store, ledger and registry is held against what was done.
class WineTrader : public testing::Test {
 protected:
  void SetUp() override {
    if (std::getenv("VELUMAR_INSTALLED") == nullptr) {
      GTEST_SKIP() << "takes over mouse and keys: scripts/test-windows runs it";
    }
    fs::create_directories(PICTURES_FOLDER);
    StartProgram();
  }

  static fs::path Folder(const char* variable) { return fs::path(std::getenv(variable)); }
  static void Sleep(int ms) { usleep(static_cast<useconds_t>(ms) * 1000); }

  void StartProgram() {
    desktop.reset();
    desktop = std::make_unique<WineDesktop>(Folder("VELUMAR_INSTALLED") / "velumar.exe");
    ASSERT_TRUE(Eventually([&] { return Find(setup).has_value(); }, 90)) << "the window comes";
    Sleep(2500);  // it slides in
  }

  std::optional<ScreenRect> Find(const Form& form) {
    const std::string title = form.Name() == "Form1" ? "Velumar1.0" : "Velumar";
    return hand.Find(title, form.Width(), form.Height());
  }
  void ClickOn(const Form& form, const Control& control) {
    const auto window = Find(form);
    ASSERT_TRUE(window) << form.Name() << " isn't shown";
    hand.Click(*window, control.Left(), control.Top(), control.Width(), control.Height());
  }

  int StoreBars() {
    try {
      return static_cast<int>(ReadBars(data / "Simulate", kSymbol, -1).size());
    } catch (const std::exception&) {
      return -1;
    }
  }
  // Until no bar comes any more; then so many.
  int BarsAtRest() {
    int bars = -1;
    while (bars != StoreBars()) {
      bars = StoreBars();
      Sleep(4500);
    }
    return bars;
  }

  // The chart as it is drawn, with all that stands on it.
  std::string ChartPicture() {
    const std::string file = scratch.Sub("chart.ppm");
    std::system(("import -window root " + file).c_str());
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

  static constexpr const char* kSymbol = "ALBRUN";

  ScratchFolder scratch;
  fs::path data = Folder("VELUMAR_USER_FOLDER") / "samples";
  DesktopHand hand;
  Desktop tables;
  Form1& setup = tables.Untouched().form1;
  Form2& navigator = tables.Untouched().form2;
  Form3& panel = tables.Untouched().form3;
  std::unique_ptr<WineDesktop> desktop;
};

TEST_F(WineTrader, InstallsPlaysStepsTradesIsKilledAndFindsAllAgain) {
  Look("setup");
  ClickOn(setup, setup.Image3);
  ASSERT_TRUE(Eventually([&] { return StoreBars() > 0; }, 60)) << "the store is written";
  const int begun = StoreBars();
  ASSERT_TRUE(Eventually([&] { return WineDesktop::Runs("MSWIN.EXE"); }, 30));
  EXPECT_FALSE(
      RegistryText("HKCU\\Software\\Equis\\Common\\8.0\\File Paths", "ProgramPath").empty());
  ASSERT_TRUE(Eventually([&] { return StoreBars() >= begun + 5; }, 60)) << "five bars come";
  Look("run");

  ClickOn(navigator, navigator.Image4);
  const int paused = BarsAtRest();
  const std::string chart = ChartPicture();
  const struct {
    const PictureButton& button;
    int bars;
    bool as_before;
  } steps[] = {{navigator.Image1, paused + 1, false},
               {navigator.Image2, paused, true},
               {navigator.Image7, paused + 30, false},
               {navigator.Image6, paused, true}};
  for (const auto& step : steps) {
    ClickOn(navigator, step.button);
    EXPECT_TRUE(Eventually([&] { return StoreBars() == step.bars; }))
        << step.button.Name() << ": " << StoreBars();
    Sleep(2500);
    Look("step-" + std::string(step.button.Name()));
  }
  (void)chart;
}

}  // namespace
}  // namespace velumar
