#pragma once

#include <optional>
#include <string>

#include "session/blind_mask.h"
#include "session/chart_side.h"
#include "session/reveal.h"
#include "session/run_source.h"
#include "session/sim_session.h"
#include "session/working_store.h"

namespace velumar {

// What a run that is played blind hides from the trader, and how its series is shown as it is.
class BlindRun {
 public:
  BlindRun(SimSession& session, RunSource& source, WorkingStore& store, ChartSide& chart)
      : session_(session), source_(source), store_(store), chart_(chart) {}

  // The symbol is the blind one from now on.
  void HideSymbol();
  // The symbol is again the one that was entered before, also if the run never began.
  void RestoreSymbol();

  // What the loaded run has played. It is not recorded in the ledger.
  RevealedSession Unrecorded() const;
  // The loaded run, of this key, is blind no more: loads its series as it is, writes it to the
  // store up to the current bar, and shows it on the chart with orders, plans and holdings at real
  // prices. Shows a box or throws std::exception if that isn't possible.
  void Show(const BlindKey& key);

 private:
  SimSession& session_;
  RunSource& source_;
  WorkingStore& store_;
  ChartSide& chart_;
  std::optional<std::string> entered_symbol_;  // SimSession::Symbol while it is hidden
};

}  // namespace velumar
