#pragma once

#include <string>
#include <vector>

#include "ledger/ledger.h"

namespace velumar {

// An order whose bar has another number now, since its series has changed.
struct LedgerMovedOrder {
  LedgerOrderKey order;  // without a place: a wiped-out holding
  // The bar, in the format of a row.
  std::string date;
  std::string time;
  int bar = 0;    // its number now
  int moved = 0;  // by so many bars
};
// Writes where the orders of a session are now, and since when their plans' stops and targets are
// set, and drops its trades, which are computed again; all or nothing. Throws LedgerError.
void LedgerMoveOrders(LedgerConnection& connection, const std::vector<LedgerMovedOrder>& orders);

}  // namespace velumar
