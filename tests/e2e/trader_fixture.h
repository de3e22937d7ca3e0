#pragma once

#include <cstdlib>
#include <memory>
#include <string>

#include "e2e/programs.h"
#include "e2e/trader_hand.h"
#include "platform/qt/settings_file.h"

namespace velumar {

// The real program, with its own data directory.
class TraderFixture : public TraderHand {
 protected:
  static constexpr int kStartBar = 150;

  void SetUp() override {
    if (std::getenv("VELUMAR_E2E") == nullptr) {
      GTEST_SKIP() << "takes over mouse and keyboard: scripts/test runs it on a virtual display";
    }
    IndexCache cache;
    StoreSecurity(data, {"ABC", "A made series", -1}, DailyBars(300), cache);
    const int date = MadeDate(kStartBar);
    FileSettings settings(scratch.Sub("settings"));
    settings.Save("LastPath", data);
    settings.Save("Refresh", "1");
    settings.Save("SelectDate", std::to_string(date / 100 % 100) + "/" +
                                    std::to_string(date % 100) + "/" +
                                    std::to_string(date / 10000));
    StartProgram();
  }

  void StartProgram() {
    program = std::make_unique<RunningProgram>(scratch.Path(), scratch.Sub("output"));
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
  long Refreshes() const {
    long count = 0;
    for (const auto& state : program->States()) count += state["event"] == "refreshed" ? 1 : 0;
    return count;
  }

  std::string data = scratch.Sub("data");
  std::unique_ptr<RunningProgram> program;
};

}  // namespace velumar
