#pragma once

#include <span>
#include <string_view>

#include "ledger/sqlite_database.h"

namespace velumar {

// A table of one of our files: its name, and its columns with their types as CREATE TABLE has them.
struct OwnTable {
  std::string_view name;
  std::string_view columns;
};

// Makes the tables that are missing.
void MakeTables(SqliteDatabase& database, std::span<const OwnTable> tables);

// Returns true for a file of ours and false for a database without any tables; throws LedgerError
// for any other. Ours has the first of the tables. Each table that it has is a plain one with its
// columns, without triggers (they would change rows) and unique indexes (they would drop rows).
// `what` names the kind of file in messages.
bool HasOwnTables(const SqliteDatabase& database, std::span<const OwnTable> tables,
                  std::string_view what);

}  // namespace velumar
