#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "ledger/ledger.h"
#include "marketdata/index_cache.h"
#include "session/blind_mask.h"

namespace velumar {

// What was played blind.
struct RevealedSession {
  int number = 0;  // of the session; 0: it was not recorded
  BlindKey key;
  std::string interval;
  std::int32_t first_day = 0;  // of the bar before the first that was fed
  std::int32_t last_day = 0;   // of the newest bar that was shown
  int first = 0;               // the bars of these days
  int last = 0;
  int current = 0;            // where the session ended
  std::vector<float> closes;  // real, of the whole series; empty if it has changed or is gone
};

// Ends a blind session and puts what it hid into its rows. Throws std::exception with a sentence if
// the session is unknown, was not played blind, or has been revealed.
RevealedSession RevealSession(LedgerConnection& ledger, int number, IndexCache& cache);

}  // namespace velumar
