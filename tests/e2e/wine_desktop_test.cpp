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
    StartVelumar();
    ASSERT_TRUE(ComesToRest(setup)) << "no setup window";
  }
  void StartVelumar() {
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
  static std::string Samples() { return Variable("VELUMAR_USER_FOLDER") + "/samples"; }
  static int StoreBars(const std::string& symbol = "ALBRUN") {
    return BarsOf(Samples() + "/Simulate", symbol);
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

  // Waits until the chart program has saved a setting with these words in it.
  static bool ChartHasSaved(const std::string& name, const std::string& words) {
    const std::string query =
        Variable("VELUMAR_WINE") + " reg query HKCU\\\\Software\\\\Velumar\\\\Chart /v ";
    return Eventually(
        [&] {
          const std::vector<std::string> lines = OutputOf(query + name);
          return std::ranges::any_of(lines, [&](const std::string& line) {
            return line.find(words) != std::string::npos;
          });
        },
        kPatience);
  }
  // Waits until a drawing is in its file.
  static bool HasDrawn() {
    const std::string file = Variable("VELUMAR_USER_FOLDER") + "/drawings.json";
    return Eventually([&] { return ReadFile(file).find("\"kind\"") != std::string::npos; },
                      kPatience);
  }
  // For a person to look at.
  static void Picture(const std::string& name) {
    OutputOf("import -window root '" + Variable("VELUMAR_PICTURES") + "/windows-" + name + ".png'");
  }
  // Keys one after the other, each once the menu or window that the one before opens can be there.
  void PressSlowly(const std::vector<std::string>& keys) const {
    for (const std::string& key : keys) {
      hand.Press(key);
      Sleep(1500);
    }
  }

  // Keys in the chart: N opens the ticket, which takes what is typed next.
  void PlanTrade() {
    hand.Press("n");
    ASSERT_TRUE(ComesToRest(ticket)) << "the plan opens";
    hand.Type("40");
    hand.Press("Return");
    ASSERT_TRUE(Eventually([&] { return !Find(ticket); }, kPatience)) << "the plan is kept";
  }

  // Velumar ends as in a power cut. The session goes on at its last bar.
  void ComeBack() {
    const int bars = StoreBars();
    OutputOf(Variable("VELUMAR_WINE") + " taskkill /f /im velumar.exe");
    ASSERT_TRUE(Eventually([&] { return !Find(panel); }, kPatience)) << "is ended";
    StartVelumar();
    ASSERT_TRUE(ComesToRest(setup)) << "starts again";
    ClickOn(setup, setup.lnkPractice);
    ASSERT_TRUE(ComesToRest(practice)) << "the list of sessions opens";
    hand.Press("Return");
    ASSERT_TRUE(ComesToRest(panel)) << "the session goes on";
    EXPECT_EQ(BarsAtRest(), bars);
  }

  // Under wine the first click on the chart raises it, and the second gives it the keys.
  void TurnToChart() const {
    for (int click = 0; click < 2; ++click) {
      hand.ClickAt(800, 400);
      Sleep(1000);
    }
  }

  // Two intervals side by side, an indicator, a drawing and a second series.
  void ReadChart() {
    PressSlowly({"alt+v", "t", "s"});
    ASSERT_TRUE(ChartHasSaved("Layout", "side by side"));
    Sleep(3000);  // a digit right after a chart has opened may be for the dialog
    hand.Press("2");
    ASSERT_TRUE(ChartHasSaved("Layout", "=week"));
    PressSlowly({"ctrl+i", "alt+a", "Up", "Up", "Up", "Up", "Up", "Up", "Up", "Return"});
    ASSERT_TRUE(ChartHasSaved("Indicators", "rsi"));
    Picture("indicators");
    PressSlowly({"Escape", "t"});
    hand.ClickAt(1250, 500);
    hand.ClickAt(1450, 400);
    ASSERT_TRUE(HasDrawn());
    PressSlowly({"ctrl+k", "Return"});
    hand.Type("JORVEK");
    hand.Press("Return");
    ASSERT_TRUE(Eventually([] { return StoreBars("JORVEK") > 0; }, kPatience)) << "is compared";
    Sleep(3000);
    Picture("chart");
  }

  // Chooses a folder with a price file, as a new user would.
  void ImportFolder() {
    const std::string folder = scratch.Sub("My prices");
    std::filesystem::create_directory(folder);
    WriteFile(folder + "/\u00d6L_D.csv",
              "Datum;Er\u00f6ffnung;Hoch;Tief;Schluss;Volumen\n"
              "30.12.2024;71,20;72,05;70,90;71,80;1200\n"
              "31.12.2024;71,80;72,40;71,10;72,15;900\n"
              "02.01.2025;72,15;73,00;71,95;72,90;1500\n");
    ClickOn(setup, setup.Command5);
    Sleep(4000);
    Picture("folder");
    std::string typed = "Z:" + folder;
    std::ranges::replace(typed, '/', '\\');
    hand.Type(typed);
    hand.Press("Return");
    // Wine draws the window's frame itself, so the window is larger than its form.
    const auto window = [] {
      return !OutputOf("xdotool search --onlyvisible --name '^Import into'").empty();
    };
    ASSERT_TRUE(Eventually(window, kPatience)) << "import window";
    Sleep(3000);
    Picture("import");
    hand.Press("alt+i");
    EXPECT_TRUE(Eventually([&] { return BarsOf(folder, "\u00d6L") == 3; }, kPatience));
    hand.Press("alt+c");
    EXPECT_TRUE(Eventually([&] { return !window(); }, kPatience)) << "closes";
  }

  static constexpr double kPatience = 240;  // seconds

  pid_t desktop = 0;
  FrmTicket& ticket = tables.Untouched().frmTicket;
  FrmPractice& practice = tables.Untouched().frmPractice;
};

// The ledger and the picture of the order are checked by scripts/test-windows.
TEST_F(WineTrader, PlaysTradesReadsTheChartImportsAndQuits) {
  ClickOn(setup, setup.Image3);
  ASSERT_TRUE(HasBars(1)) << "the store is written";
  ASSERT_TRUE(HasBars(StoreBars() + 3)) << "bars are fed";
  ClickOn(navigator, navigator.Image4);
  const int paused = BarsAtRest();
  ClickOn(navigator, navigator.Image1);
  ASSERT_TRUE(HasBars(paused + 1)) << "a step by mouse";
  EXPECT_EQ(BarsAtRest(), paused + 1);

  TurnToChart();
  hand.Press("Right");
  ASSERT_TRUE(HasBars(paused + 2)) << "a step by a chart's key";
  EXPECT_EQ(BarsAtRest(), paused + 2);
  ASSERT_NO_FATAL_FAILURE(PlanTrade());
  ClickOn(panel, panel.imgLong);
  Sleep(3000);
  Picture("order");
  ASSERT_NO_FATAL_FAILURE(ComeBack());
  TurnToChart();
  ASSERT_NO_FATAL_FAILURE(ReadChart());
  const std::size_t windows = VisibleWindows();
  ClickOn(panel, panel.imgGraph);
  ASSERT_TRUE(Eventually([&] { return VisibleWindows() > windows; }, kPatience)) << "results";
  hand.Press("Escape");
  EXPECT_TRUE(Eventually([&] { return VisibleWindows() == windows; }, kPatience)) << "results";

  ClickOn(navigator, navigator.Image5);
  ASSERT_TRUE(ComesToRest(setup)) << "back to the setup";
  ASSERT_NO_FATAL_FAILURE(ImportFolder());
  ClickOn(setup, setup.Image5);
  EXPECT_TRUE(Eventually([&] { return !Find(setup); }, kPatience)) << "quits";
}

}  // namespace
}  // namespace velumar
