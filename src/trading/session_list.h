#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "ledger/ledger.h"
#include "marketdata/index_cache.h"

namespace velumar {

// A session of the ledger, as lists show it.
struct SessionLine {
  int number = 0;
  std::string directory;
  std::string symbol;
  std::string interval;   // "D" or minutes
  std::int32_t date = 0;  // of the current bar, yyyymmdd; 0: none
  std::int32_t time = 0;  // hhmmss
  float held_long = 0;    // quantities
  float held_short = 0;
  float open_profit = 0;         // money, of what is held
  float closed_profit = 0;       // money, of what was closed
  std::optional<int> bars_left;  // nothing if the series can't be read
  std::string touched;           // when it was last played, "2026-11-27 07:03:40", UTC
  bool ended = false;
  bool blind = false;  // and not revealed
};

// All sessions in which a bar was fed, the last played first. Throws
// LedgerError.
std::vector<SessionLine> ListSessions(LedgerConnection& ledger, IndexCache& cache);

// "3 long, 1 short"; "none" if nothing is held.
std::string HoldingText(const SessionLine& line);

}  // namespace velumar
