#pragma once

#include <vector>

#include "progress/coach_report.h"

namespace velumar {

// The trades that won and lost most, five at most of each: in R if most of the selection have one,
// else in money after costs. Throws LedgerError.
std::vector<CoachTrades> BestAndWorst(LedgerConnection& connection, const CoachSource& source,
                                      const Selection& selection);

}  // namespace velumar
