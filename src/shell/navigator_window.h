#pragma once

#include <string>

#include "forms/desktop.h"
#include "platform/platform.h"
#include "session/run_control.h"
#include "session/run_view.h"
#include "session/sim_session.h"

namespace velumar {

// The logic of the navigator.
class NavigatorWindow {
 public:
  NavigatorWindow(SimSession& session, RunView& view, Desktop& desktop, Platform& platform,
                  RunControl& run);

 private:
  void BindEvents();
  void Load();
  void Place();
  void OpacityMoved();
  // A number of charts that no screen holds is refused, and the box keeps the one before.
  void ChartCountTyped();
  void Unload();
  void CloseAndReturn();
  Form2& Window() { return desktop_.form2(); }

  SimSession& session_;
  RunView& view_;
  Desktop& desktop_;
  Platform& platform_;
  RunControl& run_;
  bool closing_ = false;  // while it slides away
  std::string chart_count_;
};

}  // namespace velumar
