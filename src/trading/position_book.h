#pragma once

#include "session/sim_session.h"

namespace velumar {

// The two market families: a directory whose path holds the capital letters "SET" is a stock
// market, every other one a futures market.
bool IsStockMarket(const SimSession& session);

// Values what is held at MarketPrice: the unrealised money of both sides, and Portfolio. Each
// assignment is worked in double precision, left to right, and rounded once to the 32-bit field.
void RevaluePositions(SimSession& session);

}  // namespace velumar
