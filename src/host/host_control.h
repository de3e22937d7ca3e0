#pragma once

#include <string>
#include <string_view>

#include "forms/desktop.h"
#include "host/reg_info.h"
#include "host/trader_focus.h"
#include "platform/platform.h"
#include "session/chart_side.h"
#include "session/sim_session.h"
#include "trading/status_display.h"

namespace velumar {

// Drives the chart program through its windows and keystrokes. Failures are ignored, as a chart
// program that is slow or gone must not end a run; the status line says what the user can do.
class HostControl : public ChartSide {
 public:
  HostControl(SimSession& session, Desktop& desktop, Platform& platform, RegInfo& registry,
              StatusDisplay& status, TraderFocus& trader)
      : session_(session),
        desktop_(desktop),
        platform_(platform),
        registry_(registry),
        status_(status),
        trader_(trader) {}

  void CloseCharts() override;
  void OpenChart() override;
  void MaximizeHost() override;
  bool BringHostToFront() override;
  void RefreshCharts() override;
  // True while keys that open a chart are being typed.
  bool OpeningChart() const { return opening_ > 0; }

 private:
  // What the status line says in front of the bar, and its tooltip about what to do.
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
  void RefreshEachChart();
  int MillisecondsPerBar() const;
  int ChartCount() const;
  Trouble TroubleWithHost() const;
  void Wait(std::int16_t milliseconds);

  SimSession& session_;
  Desktop& desktop_;
  Platform& platform_;
  RegInfo& registry_;
  StatusDisplay& status_;
  TraderFocus& trader_;
  bool host_running_ = true;
  int opening_ = 0;  // charts being opened: a second run may begin inside the first one's waits
  KeyOutcome worst_outcome_ = KeyOutcome::kAccepted;  // of the current refresh
};

}  // namespace velumar
