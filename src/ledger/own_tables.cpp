#include "ledger/own_tables.h"

#include <string>

namespace velumar {

namespace {

// Raised when a change to the tables would keep this version from writing them.
constexpr double kNewestVersion = 0;

double NumberOf(const SqliteDatabase& database, std::string_view pragma) {
  return std::get<double>(database.FirstValue(pragma));
}

// "table", "view" or "virtual"; null if the file has nothing of this name.
LedgerValue TypeOf(const SqliteDatabase& database, std::string_view table) {
  return database.FirstValue(
      "SELECT type FROM pragma_table_list WHERE schema = 'main' AND name = ? COLLATE NOCASE",
      {std::string(table)});
}

void RequireColumns(const SqliteDatabase& database, const OwnTable& table) {
  // SQLite itself reads the names from the declaration.
  SqliteDatabase made(std::string(kInMemory), SqliteDatabase::Mode::kCreate);
  MakeTables(made, {&table, 1});
  const std::string name(table.name);
  const LedgerValue columns =
      made.FirstValue("SELECT group_concat('[' || name || ']') FROM pragma_table_info(?)", {name});
  database.Prepare("SELECT rowid, " + std::get<std::string>(columns) + " FROM main." + name);
}

// Throws if the table is not as MakeTables creates it, or something of another program is on it.
void RequireOwn(const SqliteDatabase& database, const OwnTable& table) {
  const std::string name(table.name);
  const LedgerValue type = TypeOf(database, name);
  const auto* const found = std::get_if<std::string>(&type);
  if (found == nullptr) return;
  if (*found != "table") {
    throw LedgerError(database.File() + ": " + name + " must be a table, but is of the type " +
                      *found);
  }
  const LedgerValue trigger = database.FirstValue(
      "SELECT name FROM sqlite_schema WHERE type = 'trigger' AND tbl_name = ? COLLATE NOCASE",
      {name});
  if (const auto* const its_name = std::get_if<std::string>(&trigger)) {
    throw LedgerError(database.File() + ": another program has put the trigger \"" + *its_name +
                      "\" on its table " + name + "; nothing is read or written");
  }
  RequireColumns(database, table);
  if (database.FirstValue("SELECT 1 FROM pragma_index_list(?) WHERE [unique] <> 0", {name}) !=
      LedgerValue()) {
    throw LedgerError(database.File() + ": another program has put a unique index on its table " +
                      name + "; nothing is written to it");
  }
}

}  // namespace

void MakeTables(SqliteDatabase& database, std::span<const OwnTable> tables) {
  for (const OwnTable& table : tables) {
    database.Execute("CREATE TABLE IF NOT EXISTS " + std::string(table.name) + " (" +
                     std::string(table.columns) + ")");
  }
}

bool HasOwnTables(const SqliteDatabase& database, std::span<const OwnTable> tables,
                  std::string_view what) {
  const std::string& file = database.File();
  const bool empty =
      database.FirstValue(
          "SELECT 1 FROM sqlite_schema WHERE name NOT LIKE 'sqlite!_%' ESCAPE '!'") ==
      LedgerValue();
  const bool main_table = TypeOf(database, tables.front().name) != LedgerValue();
  if (NumberOf(database, "PRAGMA application_id") != 0 || (!empty && !main_table)) {
    throw LedgerError(file + ": this is another program's SQLite file and no " + std::string(what));
  }
  if (NumberOf(database, "PRAGMA user_version") > kNewestVersion) {
    throw LedgerError(file + ": a newer version of Velumar has made this " + std::string(what));
  }
  for (const OwnTable& table : tables) RequireOwn(database, table);
  return !empty;
}

}  // namespace velumar
