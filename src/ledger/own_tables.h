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

// Looks whether a file is one of ours: it has the first of the tables, each table that it has is a
// plain one with its columns, and nothing of another program's sits on them (triggers would change
// rows, unique indexes drop them). Returns false for a database without any tables. Throws
// LedgerError for any other, naming what is wrong with it; `what` says what the file should be.
bool HasOwnTables(const SqliteDatabase& database, std::span<const OwnTable> tables,
                  std::string_view what);

}  // namespace velumar
