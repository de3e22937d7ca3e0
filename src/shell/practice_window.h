#pragma once

#include <functional>
#include <vector>

#include "forms/desktop.h"
#include "ledger/ledger.h"
#include "marketdata/index_cache.h"
#include "platform/platform.h"
#include "session/run_control.h"
#include "trading/session_list.h"

namespace velumar {

// What the controls of the practice window do. The last session that was played is chosen when it
// opens, so that Enter goes on with it. The list is read again after each change.
class PracticeWindow {
 public:
  // `resume` goes on with the session of that number.
  PracticeWindow(Desktop& desktop, Platform& platform, LedgerConnection& ledger, IndexCache& cache,
                 RunControl& run, std::function<void(int number)> resume);

 private:
  void Open();
  void Load();
  void List();
  void ShowChosen();
  // Null if none is chosen.
  const SessionLine* Chosen();
  void Resume();
  void End();
  void Delete();
  FrmPractice& Window() { return desktop_.frmPractice(); }

  Desktop& desktop_;
  Platform& platform_;
  LedgerConnection& ledger_;
  IndexCache& cache_;
  RunControl& run_;
  std::function<void(int number)> resume_;
  std::vector<SessionLine> lines_;
};

}  // namespace velumar
