#pragma once

#include "host/key_driver.h"
#include "host/link_driver.h"
#include "session/chart_side.h"

namespace velumar {

// The chart program's part of a run. Decides at each use how to reach the chart: our own chart
// program over its link, any other by keys.
class HostControl : public ChartSide {
 public:
  HostControl(SimSession& session, RunInputs& inputs, RunView& view, Platform& platform,
              ChartRegistry& registry, TraderFocus& trader)
      : session_(session),
        view_(view),
        platform_(platform),
        keys_(session, inputs, view, platform, registry, trader),
        link_(session, inputs, view, platform, registry, trader) {}

  void CloseCharts() override;
  void OpenChart() override { Driver().OpenChart(); }
  void MaximizeHost() override { Driver().Maximize(); }
  bool BringHostToFront() override { return Driver().BringToFront(); }
  void RefreshCharts() override;
  void ShowPositions() override;
  void TakePicture(const std::string& file) override { link_.TakePicture(file); }
  // Repeats a refresh over the link that the chart program has missed. Call it now and then: after
  // the last bar of a feed no other refresh comes.
  void CatchUp();

  // True while keys that open a chart are being typed.
  bool OpeningChart() const { return keys_.OpeningChart(); }
  // The colours of Velumar's windows, for our chart program.
  void SetTheme(bool dark) { link_.SetTheme(dark); }
  // Closes our chart program if it was started by this one.
  void QuitStarted() { link_.QuitStarted(); }
  // The trader has closed the chart program of that process, so it is not started again by itself.
  void ChartClosedByTrader(std::uint32_t process) { link_.ClosedByTrader(process); }

 private:
  ChartDriver& Driver();
  // The current bar in the status line, after what is wrong with the chart program.
  void ShowBar(const ChartTrouble& trouble);
  // How much of the run is done, and how long the rest takes.
  void ShowProgress(long refresh_ms);

  SimSession& session_;
  RunView& view_;
  Platform& platform_;
  KeyDriver keys_;
  LinkDriver link_;
};

}  // namespace velumar
