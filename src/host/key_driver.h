#pragma once

#include <initializer_list>
#include <string_view>

#include "host/chart_driver.h"

namespace velumar {

// Drives any chart program through its windows and keystrokes. It gives no sign of what it has
// done, so there are waits.
class KeyDriver : public ChartDriver {
 public:
  using ChartDriver::ChartDriver;

  void CloseCharts() override;
  void OpenChart() override;
  void Maximize() override;
  bool BringToFront() override;
  ChartTrouble Refresh() override;
  long RefreshMilliseconds() const override;
  // True while keys that open a chart are being typed.
  bool OpeningChart() const { return opening_ > 0; }

 private:
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
  ChartTrouble TroubleWithHost() const;
  void Wait(std::int16_t milliseconds);

  bool host_running_ = true;
  int opening_ = 0;  // nested: a second run may begin in the waits of the first
  KeyOutcome worst_outcome_ = KeyOutcome::kAccepted;  // of the current refresh
};

}  // namespace velumar
