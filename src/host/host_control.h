#pragma once

#include <string>
#include <string_view>

#include "host/chart_registry.h"
#include "host/trader_focus.h"
#include "platform/platform.h"
#include "session/chart_side.h"
#include "session/run_inputs.h"
#include "session/run_view.h"
#include "session/sim_session.h"

namespace velumar {

// Drives the chart program through its windows and keystrokes. Failures are ignored, since a chart
// program that is slow or gone must not end a run; the status line says what the trader can do.
class HostControl : public ChartSide {
 public:
  HostControl(SimSession& session, RunInputs& inputs, RunView& view, Platform& platform,
              ChartRegistry& registry, TraderFocus& trader)
      : session_(session),
        inputs_(inputs),
        view_(view),
        platform_(platform),
        registry_(registry),
        trader_(trader) {}

  void CloseCharts() override;
  void OpenChart() override;
  void MaximizeHost() override;
  bool BringHostToFront() override;
  void RefreshCharts() override;
  // True while keys that open a chart are being typed.
  bool OpeningChart() const { return opening_ > 0; }

 private:
  // What precedes the bar in the status line, and the advice in its tooltip.
  struct Trouble {
    std::string warning;
    std::string advice;
  };

  void BlinkLoadingNotice();
  void StartHost();
  bool FocusHost();
  bool HostIsThere();
  bool TraderIsElsewhere();
  bool WaitForDialog();
  void OpenChartInDialog();
  bool IsTaskWindow(WindowId window);
  void Send(std::string_view keys);
  void Refresh(std::initializer_list<std::string_view> keys);
  void SendEach(std::initializer_list<std::string_view> keys);
  // Refreshes each chart and switches to the next. "Pause" ends the refreshes, but the keys that
  // switch are still sent, so that the first chart is active again.
  void RefreshEachChart();
  // How much of the run is done, and how long the rest takes.
  void ShowProgress();
  Trouble TroubleWithHost() const;
  void Wait(std::int16_t milliseconds);

  SimSession& session_;
  RunInputs& inputs_;
  RunView& view_;
  Platform& platform_;
  ChartRegistry& registry_;
  TraderFocus& trader_;
  bool host_running_ = true;
  int opening_ = 0;  // nested: a second run may begin in the waits of the first
  KeyOutcome worst_outcome_ = KeyOutcome::kAccepted;  // of the current refresh
};

}  // namespace velumar
