#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "ledger/sqlite_database.h"

namespace velumar {

// A table, and its columns with their types as CREATE TABLE has them.
struct TableSchema {
  std::string_view name;
  std::string_view columns;
};

// A kind of database file.
struct DatabaseKind {
  std::string_view what;                // in messages: "ledger"
  std::span<const TableSchema> tables;  // every such file has the first one
  // Each brings a file from one version to the next; the version of a file, its user_version,
  // counts those it has had. The first one also runs on files from before versions were counted.
  std::span<void (*const)(SqliteDatabase& database)> migrations;
};

// Creates the tables that are missing.
void CreateTables(SqliteDatabase& database, std::span<const TableSchema> tables);

// Opens an existing file read-only and changes nothing. Throws LedgerError if the file is of
// another kind or damaged.
std::unique_ptr<SqliteDatabase> OpenReadOnly(const std::string& file, const DatabaseKind& kind);

// A database that only this process writes, whichever path others use for the file. A commit is on
// the disk when it returns. The object holds a lock on a small file next to the database, "-owner",
// which the system releases when the process dies. ":memory:" keeps nothing on disk.
class OwnedDatabase {
 public:
  // Creates the file or its tables if they are missing. Throws LedgerError, with InUse() if another
  // process owns the file. The file is first inspected read-only: one that is damaged, of another
  // kind or a newer version, or has a view, trigger or unique index that another program added is
  // refused and not changed. So is a file with a second hard link: SQLite finds the log by the
  // file's name, so under the other name the newest rows would be missing.
  OwnedDatabase(const std::string& file, const DatabaseKind& kind);
  OwnedDatabase(const OwnedDatabase&) = delete;
  OwnedDatabase& operator=(const OwnedDatabase&) = delete;

  SqliteDatabase& ForReading() { return *database_; }
  // Throws LedgerError if the database or one of the files next to it was moved, deleted, replaced
  // or truncated: rows written now would be lost. The rows in the log then go to the file that is
  // still open. The check takes one look-up per file.
  SqliteDatabase& ForWriting();

 private:
  struct WatchedFile {
    std::string path;
    FileIdentity identity;
    bool is_log = false;
  };
  void Configure(const DatabaseKind& kind);
  void Watch(const std::string& file);
  std::int64_t MinimumLogSize() const;  // bytes
  bool Checkpoint();

  std::unique_ptr<SqliteDatabase> owner_;
  std::unique_ptr<SqliteDatabase> database_;
  std::vector<WatchedFile> watched_;
  int log_pages_ = 0;  // in the write-ahead log after the last commit
  std::int64_t page_size_ = 0;
};

}  // namespace velumar
