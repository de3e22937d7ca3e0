#pragma once

#include <string>
#include <vector>

#include "ledger/ledger.h"
#include "results/run_record.h"

namespace velumar {

struct RunChoice {
  int number = kRunNow;
  std::string title;  // "3: ABC D from 25/01/2007, 14 orders"
};

// What can be chosen: the rows now in the ledger, then the archived runs that placed orders, newest
// first. Throws LedgerError.
std::vector<RunChoice> RunChoices(LedgerConnection& connection);

// The run that the rows now in the ledger belong to; 0 before runs were noted. Throws LedgerError.
int NewestRun(LedgerConnection& connection);

// Where the rows of a run are found again that was chosen while `newest` was the newest one: rows
// that were now in the ledger then are in the archive once another run has begun. Throws
// LedgerError.
int RunToRead(LedgerConnection& connection, int run, int newest);

}  // namespace velumar
