#pragma once

#include <optional>

#include "ledger/ledger.h"
#include "platform/platform.h"
#include "session/blind_mask.h"
#include "session/run_inputs.h"
#include "session/sim_session.h"

namespace velumar {

// What the ledger keeps of the loaded run and its session. All throw LedgerError. Without a ledger
// that can be written a run still replays, and nothing is kept.
class SessionRecord {
 public:
  SessionRecord(SimSession& session, const RunInputs& inputs, const WallClock& clock,
                LedgerConnection& ledger)
      : session_(session), inputs_(inputs), clock_(clock), ledger_(ledger) {}

  // Moves the rows of the last run to the archive and begins a new one, and a session unless one
  // is loaded. Called once the bars are loaded, not at the click, so that the rows of the last run
  // stay current if the new one can't be prepared. `key` is that of a blind run; for `as_shown` see
  // LedgerMoment.
  void BeginRun(const std::optional<BlindKey>& key, bool as_shown);
  // Writes where the session is now.
  void SaveMoment();
  // Where the session was, its book, orders and plans. A session without a number begins here. The
  // bars and the current one are loaded.
  void Restore(const LedgerPlayed& played);

 private:
  LedgerRun Run() const;
  LedgerSession Session(std::string begun) const;

  SimSession& session_;
  const RunInputs& inputs_;
  const WallClock& clock_;
  LedgerConnection& ledger_;
};

}  // namespace velumar
