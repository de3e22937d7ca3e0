#pragma once

#include <functional>

#include "forms/desktop.h"
#include "ledger/ledger.h"
#include "marketdata/index_cache.h"
#include "platform/platform.h"
#include "session/run_control.h"
#include "trading/drill.h"

namespace velumar {

// The small window that shows where a drill is. It starts the drill's charts.
class DrillChartWindow {
 public:
  // `play` starts a blind run of that many bars and returns once its feed has ended; false if it
  // could not be started.
  DrillChartWindow(Desktop& desktop, Platform& platform, LedgerConnection& ledger,
                   IndexCache& cache, RunControl& run, Drill& drill,
                   std::function<bool(int bars)> play);

  // Starts the first chart of a drill that is planned like this.
  void Begin(const LedgerDrill& plan);
  // Call it about once a second.
  void Check();
  // The trader leaves the run: that stops the drill.
  void Leave();

 private:
  void Load();
  void Place();
  void SavePlace();
  void PlayChart();
  void StopOrClose();
  void ShowStage();
  void ShowResult();
  FrmDrillChart& Window() { return desktop_.frmDrillChart(); }

  Desktop& desktop_;
  Platform& platform_;
  LedgerConnection& ledger_;
  IndexCache& cache_;
  Drill& drill_;
  std::function<bool(int bars)> play_;
};

}  // namespace velumar
