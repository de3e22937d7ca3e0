#pragma once

#include "ledger/kept_database.h"

namespace velumar {

// A ledger's tables: the two that results read, and with them the archive, the runs and the details
// of the rows.
const DatabaseKind& LedgerKind();

// What the selects of the results need of SQL: format() of a joined date and time.
void AddLedgerFunctions(SqliteDatabase& database);

}  // namespace velumar
