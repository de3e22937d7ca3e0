#pragma once

#include <string>
#include <vector>

#include "ledger/ledger.h"
#include "progress/trade_filter.h"

namespace velumar {

// What the filter asks for, one text for each condition: "Security: ABC", "Played: from
// 05/01/2026". Empty if it lets all trades pass; whether it lets trades with look-ahead pass is not
// part of it.
std::vector<std::string> FilterTexts(const TradeFilter& filter, const Played& played,
                                     const LedgerDateText& date_text);

// "ABC, BRAMOL and 5 more".
std::string ListedNames(const std::vector<std::string>& names, std::size_t most);

// "Daily bars", "15-minute bars"; `interval` as in PlayedSession.
std::string IntervalLabel(std::int32_t interval);

}  // namespace velumar
