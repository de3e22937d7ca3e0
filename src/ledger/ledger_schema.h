#pragma once

#include "ledger/owned_database.h"

namespace velumar {

// The tables of a ledger: the two that results read, the archive, the runs and the details of rows.
const DatabaseKind& LedgerKind();

// Adds format(text, pattern), which the selects of the results use for a joined date and time.
void AddLedgerFunctions(SqliteDatabase& database);

}  // namespace velumar
