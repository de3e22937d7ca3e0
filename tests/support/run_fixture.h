#pragma once

#include <memory>
#include <string>

#include "support/whole_program.h"

namespace velumar {

// A program over a directory with the daily series ABC of 200 bars and the intraday series FAST.
class RunFixture : public testing::Test {
 protected:
  RunFixture() {
    IndexCache cache;
    StoreSecurity(data, {"ABC", "Abc", -1}, DailyBars(200), cache);
    StoreSecurity(data, {"FAST", "Fast", 15}, IntradayBars(200, 15), cache);
    Reopen();
  }

  // A new process over the settings that the last one left.
  void Reopen() {
    const auto settings =
        all ? all->outside.settings.texts : std::map<std::string, std::string, std::less<>>{};
    all = std::make_unique<WholeProgram>(data);
    all->outside.settings.texts.insert(settings.begin(), settings.end());
  }

  void StartAt(int bar) {
    all->program.Start();
    all->Setup().DTPicker1.UserPick(MadeDate(bar));
    all->Setup().Image3.UserClick();
  }

  // Runs an action inside the pause that follows the feed of the bar.
  void InPauseOf(int bar, std::function<void()> action) {
    all->outside.events.SetOnPending([this, bar, action = std::move(action)] {
      if (all->session.BarIndex + 1 == bar) all->At(1000, action);
    });
  }

  int StoreSize() {
    return static_cast<int>(ReadBars(all->session.SimDir, all->session.Symbol, -1).size());
  }

  ScratchFolder scratch;
  std::string data = scratch.Sub("data");
  std::unique_ptr<WholeProgram> all;
};

}  // namespace velumar
