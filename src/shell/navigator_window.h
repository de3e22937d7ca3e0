#pragma once

#include <functional>
#include <string>

#include "forms/desktop.h"
#include "ledger/ledger.h"
#include "platform/platform.h"
#include "session/run_control.h"
#include "session/run_view.h"
#include "session/sim_session.h"

namespace velumar {

// What the controls of the navigator do.
class NavigatorWindow {
 public:
  // `leaving` is called when the trader goes back to the setup.
  NavigatorWindow(SimSession& session, RunView& view, Desktop& desktop, Platform& platform,
                  RunControl& run, LedgerConnection& ledger, std::function<void()> leaving);

 private:
  void Load();
  void Place();
  // Refuses a number of charts that doesn't fit any screen; the box then keeps the last one.
  void ChartCountTyped();
  // Brings the setup window back and unlocks all of it, however the run ended. The feed continues,
  // so that the next run can be entered at the same time; with an open position a box asks about
  // that.
  void CloseAndReturn();
  // Asks whether the session of a blind run ends here, and then shows what was played.
  void OfferReveal();
  // Returns true if the feed continues with an open position.
  bool KeepsPosition();
  Form2& Window() { return desktop_.form2(); }

  SimSession& session_;
  RunView& view_;
  Desktop& desktop_;
  Platform& platform_;
  RunControl& run_;
  LedgerConnection& ledger_;
  std::function<void()> leaving_;
  bool closing_ = false;  // while it slides out; clicks on "Close & Return" are ignored
  std::string chart_count_;
};

}  // namespace velumar
