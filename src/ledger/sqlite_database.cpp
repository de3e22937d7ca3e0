#include "ledger/sqlite_database.h"

#include <sqlite3.h>

namespace velumar {

namespace {

[[noreturn]] void Throw(const std::string& file, sqlite3* database) {
  throw LedgerError(file + ": " + sqlite3_errmsg(database),
                    sqlite3_errcode(database) == SQLITE_BUSY);
}

int Flags(SqliteDatabase::Mode mode) {
  return mode == SqliteDatabase::Mode::kCreate ? SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE
                                               : SQLITE_OPEN_READONLY;
}

// Another process that reads holds the file for moments only.
constexpr int kPatienceMs = 2000;

}  // namespace

SqliteStatement::SqliteStatement(sqlite3* database, const std::string& file, std::string_view sql)
    : database_(database), file_(file) {
  sqlite3_stmt* statement = nullptr;
  if (sqlite3_prepare_v2(database, sql.data(), static_cast<int>(sql.size()), &statement, nullptr) !=
      SQLITE_OK) {
    Fail();
  }
  statement_.reset(statement);
}

void SqliteStatement::Finalize::operator()(sqlite3_stmt* statement) const {
  sqlite3_finalize(statement);
}

void SqliteStatement::Fail() const { Throw(file_, database_); }

void SqliteStatement::Bind(int place, const LedgerValue& value) {
  int code = SQLITE_OK;
  if (const auto* number = std::get_if<double>(&value)) {
    code = sqlite3_bind_double(statement_.get(), place, *number);
  } else if (const auto* text = std::get_if<std::string>(&value)) {
    code = sqlite3_bind_text64(statement_.get(), place, text->data(), text->size(),
                               SQLITE_TRANSIENT, SQLITE_UTF8);
  } else {
    code = sqlite3_bind_null(statement_.get(), place);
  }
  if (code != SQLITE_OK) Fail();
}

bool SqliteStatement::Step() {
  const int code = sqlite3_step(statement_.get());
  if (code == SQLITE_ROW) return true;
  if (code != SQLITE_DONE) Fail();
  return false;
}

int SqliteStatement::Columns() const { return sqlite3_column_count(statement_.get()); }

std::string SqliteStatement::ColumnName(int column) const {
  return sqlite3_column_name(statement_.get(), column);
}

LedgerValue SqliteStatement::Value(int column) const {
  switch (sqlite3_column_type(statement_.get(), column)) {
    case SQLITE_NULL:
      return {};
    case SQLITE_INTEGER:
    case SQLITE_FLOAT:
      return sqlite3_column_double(statement_.get(), column);
    default:
      return std::string(static_cast<const char*>(sqlite3_column_blob(statement_.get(), column)),
                         static_cast<std::size_t>(sqlite3_column_bytes(statement_.get(), column)));
  }
}

SqliteDatabase::SqliteDatabase(const std::string& file, Mode mode) : file_(file) {
  sqlite3* database = nullptr;
  const int code = sqlite3_open_v2(file.c_str(), &database, Flags(mode), nullptr);
  handle_.reset(database);
  if (code != SQLITE_OK) Throw(file, database);
  sqlite3_busy_timeout(database, kPatienceMs);
}

void SqliteDatabase::Close::operator()(sqlite3* database) const { sqlite3_close_v2(database); }

void SqliteDatabase::Execute(const std::string& sql) {
  if (sqlite3_exec(handle_.get(), sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) {
    Throw(file_, handle_.get());
  }
}

bool SqliteDatabase::ReadOnly() const { return sqlite3_db_readonly(handle_.get(), "main") == 1; }

std::int64_t SqliteDatabase::LastRow() const { return sqlite3_last_insert_rowid(handle_.get()); }

SqliteTransaction::SqliteTransaction(SqliteDatabase& database) : database_(database) {
  database_.Execute("BEGIN IMMEDIATE");
}

SqliteTransaction::~SqliteTransaction() {
  if (!open_) return;
  try {
    database_.Execute("ROLLBACK");
  } catch (const LedgerError&) {
    // SQLite has already taken the changes back itself.
  }
}

void SqliteTransaction::Commit() {
  database_.Execute("COMMIT");
  open_ = false;
}

}  // namespace velumar
