#pragma once

#include <unistd.h>

#include <cstdlib>
#include <memory>
#include <string>

#include "e2e/desktop_hand.h"
#include "e2e/programs.h"
#include "forms/desktop.h"
#include "platform/settings_file.h"
#include "support/scratch.h"

namespace velumar {

// The real program on a directory of its own, with the hand and the eyes of a trader. The places of
// the controls come from the windows' own tables.
class TraderFixture : public testing::Test {
 protected:
  static constexpr int kBars = 300;
  static constexpr int kStartBar = 150;

  void SetUp() override {
    if (std::getenv("VELUMAR_E2E") == nullptr) {
      GTEST_SKIP() << "takes over mouse and keys: scripts/test runs it on a display of its own";
    }
    MakeData();
    FileSettings settings(scratch.Sub("settings"));
    settings.Save("LastPath", data);
    settings.Save("Refresh", "1");
    settings.Save("SelectDate", StartDate());
    StartProgram();
  }

  virtual void MakeData() {
    IndexCache cache;
    StoreSecurity(data, {"ABC", "A made series", -1}, DailyBars(kBars), cache);
  }

  virtual void StartProgram() {
    program = std::make_unique<RunningProgram>(scratch.Path(), scratch.Sub("output"));
    ASSERT_TRUE(Eventually([&] { return Find(setup).has_value(); }));
    Sleep(1500);  // the window slides in
  }

  static std::string StartDate() {
    const int date = MadeDate(kStartBar);
    return std::to_string(date / 100 % 100) + "/" + std::to_string(date % 100) + "/" +
           std::to_string(date / 10000);
  }
  static void Sleep(int ms) { usleep(static_cast<useconds_t>(ms) * 1000); }

  std::optional<ScreenRect> Find(const Form& form) {
    const std::string title = form.Name() == "Form1" ? "Velumar1.0" : "Velumar";
    return hand.Find(title, form.Width(), form.Height());
  }
  void ClickOn(const Form& form, const Control& control) {
    std::optional<ScreenRect> window;
    ASSERT_TRUE(Eventually([&] { return (window = Find(form)).has_value(); }, 3))
        << form.Name() << " isn't shown";
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
  Form3& panel = tables.Untouched().form3;
  std::unique_ptr<RunningProgram> program;
};

}  // namespace velumar
