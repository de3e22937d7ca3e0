#pragma once

#include <string>

#include "forms/desktop.h"
#include "ledger/ledger.h"
#include "marketdata/index_cache.h"
#include "platform/virtual_platform.h"
#include "session/sim_session.h"
#include "shell/program.h"
#include "support/scratch.h"

namespace velumar {

// The whole program without a window, a chart program or a clock of the real world.
struct WholeProgram {
  explicit WholeProgram(const std::string& data_dir) {
    outside.settings.Save("LastPath", data_dir);
  }

  Form1& Setup() { return windows.form1; }
  Form2& Navigator() { return windows.form2; }
  Form3& Panel() { return windows.form3; }

  // Runs an action `ms` from now, inside whatever wait reaches that moment.
  void At(int ms, std::function<void()> action) {
    outside.events.Schedule(std::chrono::milliseconds(ms), std::move(action));
  }
  long Now() const { return static_cast<long>(outside.events.Now().count()); }

  VirtualPlatform outside;
  Platform platform = outside.References();
  SimSession session;
  Desktop desktop;
  Desktop::Windows& windows = desktop.Untouched();
  IndexCache cache;
  LedgerConnection ledger{[](std::string_view date) { return std::string(date); }};
  Program program{session, desktop, platform, cache, ledger};
};

}  // namespace velumar
