#pragma once

#include <vector>

#include "ledger/trades.h"
#include "progress/played.h"

namespace velumar {

// The trades with P/L of all sessions, in the order of `scopes`, with what `plans` says about their
// entries.
Played PlayedOf(const std::vector<PlayedScope>& scopes, const std::vector<LedgerEntryPlan>& plans);

}  // namespace velumar
