#pragma once

#include <memory>
#include <span>
#include <string>
#include <vector>

#include "ledger/own_tables.h"
#include "ledger/sqlite_database.h"

namespace velumar {

// A kind of database file.
struct DatabaseKind {
  std::string_view what;             // in messages: "ledger"
  std::span<const OwnTable> tables;  // the first one is in every such file
  void (*make_tables)(SqliteDatabase& database);
};

// Opens an existing file read-only and changes nothing. Throws LedgerError for a file of another
// kind or a damaged one.
std::unique_ptr<SqliteDatabase> OpenToRead(const std::string& file, const DatabaseKind& kind);

// A database that only this program writes, whichever path others use for the file. A commit is on
// the disk when it returns. The object holds a lock on a second small file, "-owner", which the
// system releases when the process dies. ":memory:" keeps nothing on disk.
class KeptDatabase {
 public:
  // Creates the file or its tables if they are missing. Throws LedgerError, with InUse() if another
  // program keeps the file. A file of another kind is not changed.
  KeptDatabase(const std::string& file, const DatabaseKind& kind);
  KeptDatabase(const KeptDatabase&) = delete;
  KeptDatabase& operator=(const KeptDatabase&) = delete;

  SqliteDatabase& ForReading() { return *database_; }
  // Throws LedgerError if the file or one of those next to it was moved, deleted, replaced or cut
  // short, since rows written now would be lost.
  SqliteDatabase& ForWriting();

 private:
  struct Watched {
    std::string path;
    FileIdentity identity;
    bool is_log = false;
  };
  void Prepare(const DatabaseKind& kind);
  void Watch(const std::string& file);
  std::uint64_t LogSize() const;  // bytes that the log has at least
  bool MoveRowsIntoFile();

  std::unique_ptr<SqliteDatabase> owner_;
  std::unique_ptr<SqliteDatabase> database_;
  std::vector<Watched> watched_;
  int log_pages_ = 0;  // in the write-ahead log after the last commit
  std::uint64_t page_size_ = 0;
};

}  // namespace velumar
