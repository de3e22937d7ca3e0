#include "ledger/own_tables.h"

#include <algorithm>
#include <string>

#include "base/text.h"

namespace velumar {

namespace {

// Raised when a change to the tables would keep this version from writing them.
constexpr double kNewestVersion = 0;

// "a TEXT, [b c] TEXT" as "a, [b c]".
std::string NamesOf(std::string_view columns) {
  std::string names;
  while (!columns.empty()) {
    const std::string_view column = columns.substr(0, columns.find(", "));
    const std::size_t end = column.starts_with('[') ? column.find(']') + 1 : column.find(' ');
    names += (names.empty() ? "" : ", ") + std::string(column.substr(0, end));
    columns.remove_prefix(std::min(column.size() + 2, columns.size()));
  }
  return names;
}

double NumberOf(const SqliteDatabase& database, std::string_view pragma) {
  SqliteStatement statement = database.Prepare(pragma);
  return statement.Step() ? std::get<double>(statement.Value(0)) : 0;
}

std::string TextOf(const SqliteStatement& row, int column) {
  const LedgerValue value = row.Value(column);
  const auto* const text = std::get_if<std::string>(&value);
  return text == nullptr ? std::string() : *text;
}

// Throws where a table isn't as we make it.
void RequireColumns(const SqliteDatabase& database, const OwnTable& table) {
  const std::string name(table.name);
  database.Prepare("SELECT rowid, " + NamesOf(table.columns) + " FROM main." + name);
  SqliteStatement unique =
      database.Prepare("SELECT name FROM pragma_index_list(?) WHERE [unique] <> 0");
  unique.Bind(1, name);
  if (unique.Step()) {
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
  const std::string foreign =
      file + ": this is another program's SQLite file and no " + std::string(what);
  if (NumberOf(database, "PRAGMA application_id") != 0) throw LedgerError(foreign);
  if (NumberOf(database, "PRAGMA user_version") > kNewestVersion) {
    throw LedgerError(file + ": a newer version of Velumar has made this " + std::string(what));
  }
  bool any = false;
  bool main_table = false;
  SqliteStatement entry = database.Prepare(
      "SELECT type, name, tbl_name, coalesce(sql, '') LIKE 'CREATE VIRTUAL%' FROM sqlite_schema "
      "WHERE name NOT LIKE 'sqlite!_%' ESCAPE '!'");
  while (entry.Step()) {
    any = true;
    const std::string type = TextOf(entry, 0);
    const auto table = std::ranges::find_if(tables, [&](const OwnTable& own) {
      return UpperCased(own.name) == UpperCased(TextOf(entry, type == "trigger" ? 2 : 1));
    });
    if (table == tables.end()) continue;
    const std::string name(table->name);
    if (type == "trigger") {
      throw LedgerError(file + ": another program has put the trigger \"" + TextOf(entry, 1) +
                        "\" on its table " + name + "; nothing is read or written");
    }
    if (type != "table" || entry.Value(3) != LedgerValue(0.0)) {
      throw LedgerError(file + ": " + name + " must be a table, but is a " +
                        (type == "table" ? "virtual table" : type));
    }
    main_table = main_table || table == tables.begin();
    RequireColumns(database, *table);
  }
  if (any && !main_table) throw LedgerError(foreign);
  return any;
}

}  // namespace velumar
