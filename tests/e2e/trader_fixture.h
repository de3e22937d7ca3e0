#pragma once

#include <cstdlib>
#include <memory>
#include <string>

#include "e2e/programs.h"
#include "e2e/trader_hand.h"
#include "platform/qt/settings_file.h"

namespace velumar {

// The real program on a directory of its own, in a trader's hands.
class TraderFixture : public TraderHand {
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
    StartProgram();
  }

  void StartProgram() {
    program = std::make_unique<RunningProgram>(scratch.Path(), scratch.Sub("output"));
    ASSERT_TRUE(Eventually([&] { return Find(setup).has_value(); }));
    Sleep(1500);  // the window slides in
  }

  static std::string StartDate() {
    const int date = MadeDate(kStartBar);
    return std::to_string(date / 100 % 100) + "/" + std::to_string(date % 100) + "/" +
           std::to_string(date / 10000);
  }
  nlohmann::json State() {
    const auto states = program->States();
    return states.empty() ? nlohmann::json() : states.back();
  }
  int ChartBars() {
    const nlohmann::json state = State();
    return state.is_null() || state["chart"].is_null() ? -1 : state["chart"]["bars"].get<int>();
  }
  int StoreBars() { return BarsOf(data + "/Simulate", "ABC"); }
  // True if chart and store both hold so many bars.
  bool StandsOn(int bars) { return ChartBars() == bars && StoreBars() == bars; }
  long Refreshes() {
    long count = 0;
    for (const auto& state : program->States()) count += state["event"] == "refreshed" ? 1 : 0;
    return count;
  }

  std::string data = scratch.Sub("data");
  std::unique_ptr<RunningProgram> program;
};

}  // namespace velumar
