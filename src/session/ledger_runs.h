#pragma once

#include "ledger/ledger.h"
#include "platform/services.h"
#include "session/sim_session.h"

namespace velumar {

// What a run does to the ledger. One that was never open for writing leaves the run alone: it
// replays, and orders say why they are refused.
class LedgerRuns {
 public:
  LedgerRuns(SimSession& session, MessageBoxes& boxes, LedgerConnection& ledger)
      : session_(session), boxes_(boxes), ledger_(ledger) {}

  // Moves the rows of the last run to the archive and begins a new one. If the ledger can't, shows
  // a box and returns false: orders of a new run would join the rows of the old one.
  bool Begin();

 private:
  LedgerRun Described() const;

  SimSession& session_;
  MessageBoxes& boxes_;
  LedgerConnection& ledger_;
};

}  // namespace velumar
