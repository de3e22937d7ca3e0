#pragma once

#include <vector>

#include "forms/desktop.h"
#include "ledger/ledger.h"
#include "marketdata/index_cache.h"
#include "platform/platform.h"
#include "progress/drill_results.h"
#include "session/sim_session.h"
#include "shell/drill_chart_window.h"

namespace velumar {

// The window that a drill is started in, with the earlier ones.
class DrillWindow {
 public:
  DrillWindow(const SimSession& session, Desktop& desktop, Platform& platform,
              LedgerConnection& ledger, IndexCache& cache, DrillChartWindow& charts);

 private:
  void Load();
  void List();
  void Start();
  // Throws std::runtime_error with a sentence if an entered number can't be used.
  LedgerDrill Entered();
  FrmDrill& Window() { return desktop_.frmDrill(); }

  const SimSession& session_;
  Desktop& desktop_;
  Platform& platform_;
  LedgerConnection& ledger_;
  IndexCache& cache_;
  DrillChartWindow& charts_;
  std::vector<DrillResult> results_;  // as listed
};

}  // namespace velumar
