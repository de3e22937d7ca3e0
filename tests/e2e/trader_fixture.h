#pragma once

#include <cstdlib>

#include "base/dates.h"
#include "e2e/running_program.h"
#include "e2e/trader_hand.h"
#include "platform/qt/settings_file.h"

namespace velumar {

// The real program, with its own data directory.
struct TraderFixture : TraderHand {
  static constexpr int kStartBar = 150;

  void SetUp() override {
    if (std::getenv("VELUMAR_E2E") == nullptr) {
      GTEST_SKIP() << "takes over mouse and keyboard: scripts/test runs it on a virtual display";
    }
    IndexCache cache;
    StoreSecurity(data, {"ABC", "A made series", -1}, DailyBars(300), cache);
    FileSettings settings(scratch.Sub("settings"));
    settings.Save("LastPath", data);
    settings.Save("Refresh", "1");
    settings.Save("SelectDate", DateText(MadeDate(kStartBar), "M/d/yyyy"));
    StartProgram();
  }
  void StartProgram() {
    program.emplace(scratch.Path(), scratch.Sub("output"), chart_link);
    ASSERT_TRUE(Eventually([&] { return Find(setup).has_value(); }));
    Sleep(1500);  // the window slides in
  }
  void WaitForChart() {
    ASSERT_TRUE(Eventually([&] { return ChartBars() > kStartBar; }, 60)) << "no chart";
  }
  // Returns the bars in the store once the last bar of the feed has arrived.
  int BarsAfterPause() {
    Sleep(4000);
    return StoreBars();
  }

  nlohmann::json State() const {
    const auto states = program->States();
    return states.empty() ? nlohmann::json() : states.back();
  }
  int ChartBars() const {
    const nlohmann::json state = State();
    return state.is_null() || state["chart"].is_null() ? -1 : state["chart"]["bars"].get<int>();
  }
  int StoreBars() const { return BarsOf(data + "/Simulate", "ABC"); }
  // Waits until chart and store both have this many bars.
  bool Shows(int bars) {
    return Eventually([&] { return ChartBars() == bars && StoreBars() == bars; });
  }

  std::string chart_link = "direct";
  std::string data = scratch.Sub("data");
  std::optional<RunningProgram> program;
};

}  // namespace velumar
