#include <cstdlib>

#include "e2e/desktop_hand.h"
#include "e2e/programs.h"
#include "forms/desktop.h"
#include "platform/settings_file.h"
#include "support/scratch.h"

namespace velumar {
namespace {

// A trader's whole run with the mouse, on a directory of its own. The places of the controls come
// from the windows' own tables.
class RunE2e : public testing::Test {
 protected:
  static constexpr int kBars = 300;
  static constexpr int kStartBar = 150;

  void SetUp() override {
    if (std::getenv("VELUMAR_E2E") == nullptr) {
      GTEST_SKIP() << "takes over mouse and keys: scripts/test runs it on a display of its own";
    }
    IndexCache cache;
    StoreSecurity(data, {"ABC", "A made series", -1}, DailyBars(kBars), cache);
    FileSettings settings(scratch.Sub("settings"));
    settings.Save("LastPath", data);
    settings.Save("Refresh", "1");
    settings.Save("SelectDate", StartDate());
    program = std::make_unique<RunningProgram>(scratch.Path(), scratch.Sub("output"));
    ASSERT_TRUE(Eventually([&] { return hand.Find("Velumar1.0", 4290, 2865).has_value(); }));
    Sleep(1500);  // the window slides in
  }

  static std::string StartDate() {
    const int date = MadeDate(kStartBar);
    return std::to_string(date / 100 % 100) + "/" + std::to_string(date % 100) + "/" +
           std::to_string(date / 10000);
  }
  static void Sleep(int ms) { usleep(static_cast<useconds_t>(ms) * 1000); }

  void ClickOn(const Form& form, const Control& control) {
    const std::string title = form.Name() == "Form1" ? "Velumar1.0" : "Velumar";
    const auto window = hand.Find(title, form.Width(), form.Height());
    ASSERT_TRUE(window) << form.Name() << " isn't shown";
    hand.Click(*window, control.Left(), control.Top(), control.Width(), control.Height());
  }

  nlohmann::json State() {
    const auto states = program->States();
    return states.empty() ? nlohmann::json() : states.back();
  }
  int ChartBars() {
    const nlohmann::json state = State();
    return state.is_null() || state["chart"].is_null() ? -1 : state["chart"]["bars"].get<int>();
  }
  int StoreBars() {
    try {
      return static_cast<int>(ReadBars(data + "/Simulate", "ABC", -1).size());
    } catch (const std::exception&) {
      return -1;
    }
  }
  // Chart and store stand on the same number of bars.
  bool StandsOn(int bars) { return ChartBars() == bars && StoreBars() == bars; }
  long Refreshes() {
    long count = 0;
    for (const auto& state : program->States()) count += state["event"] == "refreshed" ? 1 : 0;
    return count;
  }

  ScratchFolder scratch;
  std::string data = scratch.Sub("data");
  DesktopHand hand;
  Desktop tables;
  Form1& setup = tables.Untouched().form1;
  Form2& navigator = tables.Untouched().form2;
  std::unique_ptr<RunningProgram> program;
};

TEST_F(RunE2e, ATraderPlaysStepsPausesOpensASecondChartAndReturns) {
  ClickOn(setup, setup.Image3);
  ASSERT_TRUE(Eventually([&] { return ChartBars() >= kStartBar; }, 60)) << "the chart opens";
  ASSERT_TRUE(Eventually([&] { return ChartBars() >= kStartBar + 5; }, 40)) << "five bars come";
  EXPECT_EQ(State()["chart"]["symbol"], "ABC");

  ClickOn(navigator, navigator.Image4);
  Sleep(4000);  // the bar that still comes
  const int paused = StoreBars();
  EXPECT_TRUE(Eventually([&] { return StandsOn(paused); }));
  EXPECT_LE(paused, kStartBar + 12);

  const struct {
    const PictureButton& button;
    int bars;
  } steps[] = {{navigator.Image1, paused + 1},
               {navigator.Image2, paused},
               {navigator.Image7, paused + 30},
               {navigator.Image6, paused}};
  for (const auto& step : steps) {
    ClickOn(navigator, step.button);
    EXPECT_TRUE(Eventually([&] { return StandsOn(step.bars); }))
        << step.button.Name() << ": chart " << ChartBars() << ", store " << StoreBars();
    Sleep(300);
  }

  ClickOn(navigator, navigator.Image3);
  EXPECT_TRUE(Eventually([&] { return StoreBars() >= paused + 2; })) << "Play goes on";
  ClickOn(navigator, navigator.Image4);
  Sleep(4000);
  const int before = StoreBars();

  // A second chart of the same store, opened by hand.
  hand.Activate("MetaStock");
  hand.Press("alt+f");
  hand.Press("o");
  Sleep(700);
  hand.Type(data + "/Simulate");
  hand.Press("Return");
  Sleep(300);
  hand.Type("ABC");
  hand.Press("Return");
  ASSERT_TRUE(Eventually([&] { return State()["charts"] == 2; })) << State();
  ClickOn(navigator, navigator.txtRefresh);
  hand.Press("ctrl+a");
  hand.Type("2");
  const long refreshed = Refreshes();
  const auto active = State()["active"];
  ClickOn(navigator, navigator.Image1);
  EXPECT_TRUE(Eventually([&] { return Refreshes() >= refreshed + 2; })) << "both are refreshed";
  EXPECT_TRUE(Eventually([&] { return StandsOn(before + 1); }));
  EXPECT_TRUE(Eventually([&] { return State()["active"] == active; })) << "the ring is closed";

  ClickOn(navigator, navigator.Image5);
  ASSERT_TRUE(Eventually([&] { return hand.Find("Velumar1.0", 4290, 2865).has_value(); }));
  Sleep(2500);
  ClickOn(setup, setup.Image5);
  EXPECT_TRUE(Eventually([&] { return program->Ended(); }));
  EXPECT_EQ(program->ExitCode(), 0);
  FileSettings settings(scratch.Sub("settings"));
  EXPECT_EQ(settings.Read("Symbol"), "ABC");
  EXPECT_NE(settings.Read("NavTop"), std::nullopt);
}

}  // namespace
}  // namespace velumar
