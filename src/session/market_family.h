#pragma once

#include "session/sim_session.h"

namespace velumar {

// The two market families: a directory whose path holds the capital letters "SET" is a stock
// market, every other one a futures market.
bool IsStockMarket(const SimSession& session);

}  // namespace velumar
