#pragma once

#include "forms/desktop.h"
#include "ledger/ledger.h"
#include "platform/services.h"
#include "session/sim_session.h"

namespace velumar {

// What a run does to the ledger. A ledger that can't be written leaves the run alone: it replays,
// and orders say why they are refused.
class LedgerRuns {
 public:
  LedgerRuns(SimSession& session, Desktop& desktop, MessageBoxes& boxes, LedgerConnection& ledger)
      : session_(session), desktop_(desktop), boxes_(boxes), ledger_(ledger) {}

  // Moves the rows of the run before to the archive and begins a new one.
  void Begin();
  // Notes what is known once the series is loaded.
  void NoteSeries();

 private:
  LedgerRun Described() const;
  void Guarded(void (*change)(LedgerConnection&, const LedgerRun&));

  SimSession& session_;
  Desktop& desktop_;
  MessageBoxes& boxes_;
  LedgerConnection& ledger_;
};

}  // namespace velumar
