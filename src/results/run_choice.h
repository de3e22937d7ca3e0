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

// A run that is shown, and the newest one when its window came up.
struct ShownRun {
  int number = kRunNow;
  int newest = 0;
};

// Where its rows are found now: those that were in the ledger then are in the archive once another
// run has begun. Throws LedgerError.
int RunToRead(LedgerConnection& connection, ShownRun shown);

}  // namespace velumar
