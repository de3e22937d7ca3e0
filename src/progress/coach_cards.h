#pragma once

#include <optional>

#include "progress/coach_report.h"

namespace velumar {

// All cards of the ledger and how they were answered, whatever trades are selected. Names no
// security. Nothing if there are no cards. Throws LedgerError.
std::optional<CoachTable> CardsTable(LedgerConnection& connection);

}  // namespace velumar
