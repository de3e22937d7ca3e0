#pragma once

#include <string>
#include <vector>

#include "ledger/ledger.h"

namespace velumar {

// A run or session whose results can be shown.
struct ResultChoice {
  LedgerScope scope;
  std::string title;
};

// The session of the current run and its runs, the earlier sessions and the runs that belong to
// none, each newest first. Runs and sessions without orders are left out, except the current ones.
// The first choice is what a trader wants to see unasked. Throws LedgerError.
std::vector<ResultChoice> ResultChoices(LedgerConnection& connection);

}  // namespace velumar
