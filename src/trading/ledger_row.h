#pragma once

#include <string_view>
#include <vector>

#include "ledger/ledger.h"
#include "trading/position_book.h"

namespace velumar {

// The values of an order's row for PortfolioColumns(), taken after the book holds the order. A row
// speaks only for its own side; the other side's columns are 0 even when it holds something.
std::vector<LedgerValue> LedgerRow(const SimSession& session, const Side& side,
                                   std::string_view position, bool offset);

// What is noted of a side's holding in `before` that too large an offset wiped out at this bar.
LedgerWiped WipedHolding(const SimSession& session, std::string_view position, const Book& before,
                         const Side& side);

}  // namespace velumar
