#pragma once

#include <string>
#include <vector>

#include "ledger/ledger.h"

namespace velumar {

// A drill: blind charts of a few bars each, drawn one after another, each one a session.
struct LedgerDrill {
  int number = 0;          // 0: not in the ledger
  std::string began = {};  // "2026-11-27 07:03:40", UTC
  int charts = 0;          // wanted
  int bars = 0;            // of each chart
  int seconds = 0;         // for each chart; 0: no limit
  std::string directory = {};
  std::string interval = {};       // "D" or minutes
  bool finished = false;           // all charts were played to their end
  std::vector<int> sessions = {};  // of the charts that were begun, in their order

  bool operator==(const LedgerDrill&) const = default;
};

// All throw LedgerError.

// Adds a session to the drill as its next chart; a drill without a number begins with it. Returns
// the drill's number.
int LedgerAddToDrill(LedgerConnection& connection, const LedgerDrill& drill, int session);
void LedgerFinishDrill(LedgerConnection& connection, int number);
// Oldest first. A ledger of an earlier version that is only read has none.
std::vector<LedgerDrill> LedgerDrills(LedgerConnection& connection);

}  // namespace velumar
