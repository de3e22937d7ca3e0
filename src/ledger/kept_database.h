#pragma once

#include <memory>
#include <span>
#include <string>
#include <vector>

#include "ledger/own_tables.h"
#include "ledger/sqlite_database.h"

namespace velumar {

// What a kind of database files is known by.
struct DatabaseKind {
  std::string_view what;             // in messages: "ledger"
  std::span<const OwnTable> tables;  // the first one is in every such file
  void (*make_tables)(SqliteDatabase& database);
};

// Opens an existing file of a kind to read it, and changes nothing. Throws LedgerError for a file
// of another kind or a damaged one.
std::unique_ptr<SqliteDatabase> OpenToRead(const std::string& file, const DatabaseKind& kind);

// A database that this program alone writes, however other programs name the file; what is
// committed to it is on the disk. A lock on a second small file, "-owner", is held as long as the
// object lives, and freed by the system when the process dies. ":memory:" keeps nothing on disk.
class KeptDatabase {
 public:
  // Makes the file or its tables where they are missing. Throws LedgerError, InUse() when another
  // program keeps the file; a file that isn't of this kind is left as it is.
  KeptDatabase(const std::string& file, const DatabaseKind& kind);
  KeptDatabase(const KeptDatabase&) = delete;
  KeptDatabase& operator=(const KeptDatabase&) = delete;

  SqliteDatabase& ForReading() { return *database_; }
  // Throws LedgerError once the file or one of those next to it was moved, deleted, replaced or cut
  // short: what is written then would be lost.
  SqliteDatabase& ForWriting();

 private:
  struct Watched {
    std::string path;
    FileIdentity identity;
  };
  void Prepare(const DatabaseKind& kind);
  void Watch(const std::string& file);
  bool CutShort() const;
  bool MoveRowsIntoFile();

  std::unique_ptr<SqliteDatabase> owner_;
  std::unique_ptr<SqliteDatabase> database_;
  std::vector<Watched> watched_;
  int log_pages_ = 0;  // in the write-ahead log after the last commit
  std::uint64_t page_size_ = 0;
};

}  // namespace velumar
