#pragma once

#include <string_view>

#include "ledger/owned_database.h"

namespace velumar {

// The 22 columns of a row. NUMERIC stores whole numbers as integers, so other tools show them
// plainly.
inline constexpr std::string_view kRowColumns =
    "Profile NUMERIC, Symbol TEXT, SymbolInterval NUMERIC, ActDate TEXT, ActTime TEXT, "
    "MarketPrice NUMERIC, Position TEXT, LAvgPrice NUMERIC, LAmount NUMERIC, Loffset NUMERIC, "
    "LAccum NUMERIC, LUnrealised NUMERIC, LRealised NUMERIC, SAvgPrice NUMERIC, SAmount NUMERIC, "
    "Soffset NUMERIC, SAccum NUMERIC, SUnrealised NUMERIC, SRealised NUMERIC, "
    "BalancePoint NUMERIC, Commission NUMERIC, Portfolio NUMERIC";

// The tables of a ledger, and how one of an earlier version gets them.
const DatabaseKind& LedgerKind();

}  // namespace velumar
