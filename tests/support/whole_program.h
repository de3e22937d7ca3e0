#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>

#include "forms/desktop.h"
#include "ledger/ledger.h"
#include "marketdata/index_cache.h"
#include "platform/virtual_platform.h"
#include "session/sim_session.h"
#include "shell/program.h"
#include "support/matchers.h"
#include "support/scratch.h"

namespace velumar {

// The whole program without a window, a chart program or a clock of the real world.
struct WholeProgram {
  // `change` prepares what the program is given.
  explicit WholeProgram(
      const std::string& data_dir, const std::function<void(Platform&)>& change = [](Platform&) {})
      : platform(Changed(outside.References(), change)) {
    outside.settings.Save("LastPath", data_dir);
  }

  Form1& Setup() { return windows.form1; }
  Form2& Navigator() { return windows.form2; }
  Form3& Panel() { return windows.form3; }

  // Starts a run at a bar's date.
  void Play(int bar) {
    Setup().DTPicker1.UserPick(MadeDate(bar));
    Setup().Image3.UserClick();
  }
  // Runs an action `ms` from now, inside whatever wait reaches that moment.
  void At(int ms, std::function<void()> action) {
    outside.events.Schedule(std::chrono::milliseconds(ms), std::move(action));
  }
  long Now() const { return static_cast<long>(outside.events.Now().count()); }

  VirtualPlatform outside;
  Platform platform;
  SimSession session;
  Desktop desktop;
  Desktop::Windows& windows = desktop.Untouched();
  IndexCache cache;
  LedgerConnection ledger{[](std::string_view date) { return std::string(date); }};
  Program program{session, desktop, platform, cache, ledger};

 private:
  static Platform Changed(Platform platform, const std::function<void(Platform&)>& change) {
    change(platform);
    return platform;
  }
};

// A program over a directory with the daily series ABC of 200 bars and the intraday series FAST.
struct RunFixture : testing::Test {
  RunFixture() {
    IndexCache cache;
    StoreSecurity(data, {"ABC", "Abc", -1}, DailyBars(200), cache);
    StoreSecurity(data, {"FAST", "Fast", 15}, IntradayBars(200, 15), cache);
    Reopen();
  }

  // A new process over the settings that the last one left.
  void Reopen() {
    decltype(all->outside.settings.texts) settings;
    if (all) settings = all->outside.settings.texts;
    all = std::make_unique<WholeProgram>(
        data, [this](Platform& platform) { platform.ledger_file = ledger_file; });
    all->outside.settings.texts.insert(settings.begin(), settings.end());
  }

  void StartAt(int bar) {
    all->program.Start();
    all->Play(bar);
  }

  // Runs an action inside the pause that follows the feed of the bar.
  void InPauseOf(int bar, std::function<void()> action) {
    all->outside.events.SetOnPending([this, bar, action = std::move(action)] {
      if (all->session.BarIndex + 1 == bar) all->At(1000, action);
    });
  }

  std::size_t StoreSize(const std::string& symbol = "ABC", int interval = -1) {
    return ReadBars(all->session.SimDir, symbol, interval).size();
  }

  ScratchFolder scratch;
  std::string data = scratch.Sub("data");
  std::string ledger_file{kInMemory};
  std::unique_ptr<WholeProgram> all;
};

}  // namespace velumar
