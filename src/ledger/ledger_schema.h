#pragma once

#include "ledger/sqlite_database.h"

namespace velumar {

// Makes what is missing of the ledger's tables: the two that results read, and beside them the
// archive, the runs and the details of the rows.
void MakeLedgerTables(SqliteDatabase& database);

// What the selects of the results need of SQL: format() of a joined date and time.
void AddLedgerFunctions(SqliteDatabase& database);

}  // namespace velumar
