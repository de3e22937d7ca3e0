#pragma once

#include <string_view>
#include <vector>

#include "ledger/ledger.h"
#include "trading/position_book.h"

namespace velumar {

// The values of an order's row for PortfolioColumns(), read after the book has taken the order. A
// row is about its own side only: the other side's columns are 0 even if it holds something.
std::vector<LedgerValue> LedgerRow(const SimSession& session, const Side& side,
                                   std::string_view position, bool offset);

// What the ledger keeps of a holding in `before` that too large an offset has dropped at this bar.
LedgerWiped WipedHolding(const SimSession& session, std::string_view position, const Book& before,
                         const Side& side);

}  // namespace velumar
