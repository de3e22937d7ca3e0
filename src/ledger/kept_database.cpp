#include "ledger/kept_database.h"

#include <sqlite3.h>

namespace velumar {

namespace {

// Counts the pages of the write-ahead log, and empties it into the file as SQLite does by itself.
int AfterCommit(void* pages, sqlite3* database, const char*, int count) {
  constexpr int kManyPages = 1000;
  *static_cast<int*>(pages) = count;
  if (count >= kManyPages) {
    sqlite3_wal_checkpoint_v2(database, nullptr, SQLITE_CHECKPOINT_PASSIVE, nullptr, nullptr);
  }
  return SQLITE_OK;
}

void RequireSound(const SqliteDatabase& database) {
  SqliteStatement check = database.Prepare("PRAGMA quick_check(1)");
  if (!check.Step() || check.Value(0) != LedgerValue("ok")) {
    throw LedgerError(database.File() + ": the database is damaged");
  }
}

// What may be kept: a file of this kind, or none yet.
void RequireKeepable(const std::string& file, const std::string& path, const DatabaseKind& kind) {
  const FileIdentity found = IdentityOf(path);
  if (found.kind == FileIdentity::Kind::kOther || found.HoldsBytes()) {
    const SqliteDatabase present(file, SqliteDatabase::Mode::kReadOnly);
    HasOwnTables(present, kind.tables, kind.what);
    RequireSound(present);
  } else if (IdentityOf(path + "-wal").HoldsBytes()) {
    throw LedgerError(path + "-wal: it holds rows of a " + std::string(kind.what) +
                      " that is no longer next to it; move both together");
  }
  if (found.links > 1) {
    throw LedgerError(file + ": the file has a second name (a hard link), under which another " +
                      "program would miss the newest rows; copy it instead");
  }
}

std::unique_ptr<SqliteDatabase> TakeOwnership(const std::string& file, const std::string& path,
                                              const DatabaseKind& kind) {
  const std::string lock = path + "-owner";
  try {
    auto owner = std::make_unique<SqliteDatabase>(lock, SqliteDatabase::Mode::kCreate);
    // Nothing is ever written to it, so it needs no journal, which a killed program would leave.
    owner->Execute("PRAGMA busy_timeout=0; PRAGMA journal_mode=OFF");
    owner->Execute("BEGIN EXCLUSIVE");
    return owner;
  } catch (const LedgerError& error) {
    if (error.InUse()) {
      throw LedgerError(file + ": the " + std::string(kind.what) + " is in use by another program",
                        true);
    }
    if (IdentityOf(lock).kind == FileIdentity::Kind::kMissing) {
      throw LedgerError(file + ": its folder can't be written");
    }
    throw;
  }
}

}  // namespace

std::unique_ptr<SqliteDatabase> OpenToRead(const std::string& file, const DatabaseKind& kind) {
  auto database = std::make_unique<SqliteDatabase>(file, SqliteDatabase::Mode::kReadOnly);
  if (!HasOwnTables(*database, kind.tables, kind.what)) {
    throw LedgerError(file + ": this is no " + std::string(kind.what) + ", it has no tables");
  }
  RequireSound(*database);
  return database;
}

KeptDatabase::KeptDatabase(const std::string& file, const DatabaseKind& kind) {
  const bool on_disk = file != kInMemory;
  if (on_disk) {
    const std::string path = CanonicalPath(file);
    RequireKeepable(file, path, kind);
    owner_ = TakeOwnership(file, path, kind);
  }
  database_ = std::make_unique<SqliteDatabase>(file, SqliteDatabase::Mode::kCreate);
  if (database_->ReadOnly()) throw LedgerError(file + ": the file can only be read");
  Prepare(kind);
  if (on_disk) {
    for (const char* suffix : {"", "-wal", "-shm", "-owner"}) Watch(database_->Path() + suffix);
    // A link that is turned elsewhere counts as a file replaced.
    if (file != database_->Path()) Watch(file);
  }
}

void KeptDatabase::Prepare(const DatabaseKind& kind) {
  database_->Execute("PRAGMA journal_mode=WAL");
  // Committed means on the disk, also after a power cut.
  database_->Execute("PRAGMA synchronous=FULL");
  sqlite3_wal_hook(database_->Handle(), AfterCommit, &log_pages_);
  SqliteTransaction transaction(*database_);
  kind.make_tables(*database_);
  transaction.Commit();
  SqliteStatement page_size = database_->Prepare("PRAGMA page_size");
  page_size.Step();
  page_size_ = static_cast<std::uint64_t>(std::get<double>(page_size.Value(0)));
}

void KeptDatabase::Watch(const std::string& file) {
  // Where the file system knows no shared memory, there is no log.
  const FileIdentity identity = IdentityOf(file);
  if (identity.kind != FileIdentity::Kind::kMissing) watched_.push_back({file, identity});
}

SqliteDatabase& KeptDatabase::ForWriting() {
  for (const Watched& file : watched_) {
    const FileIdentity now = IdentityOf(file.path);
    if (now.SameFile(file.identity)) continue;
    MoveRowsIntoFile();
    throw LedgerError(file.path +
                      (now.kind == FileIdentity::Kind::kMissing
                           ? ": the file was moved or deleted"
                           : ": the file was replaced by another one") +
                      "; put it back, or start the program again");
  }
  if (CutShort() && !MoveRowsIntoFile()) {
    throw LedgerError(database_->Path() + "-wal: another program has cut the file short; " +
                      "start the program again and check the newest rows");
  }
  return *database_;
}

bool KeptDatabase::CutShort() const {
  constexpr std::uint64_t kLogHeader = 32;
  constexpr std::uint64_t kPageHeader = 24;
  if (log_pages_ == 0 || watched_.empty()) return false;
  const std::uint64_t pages = static_cast<std::uint64_t>(log_pages_);
  return IdentityOf(database_->Path() + "-wal").size <
         kLogHeader + pages * (kPageHeader + page_size_);
}

// The rows that only the log holds go to the file that is still open, wherever it lies by now. They
// aren't lost then, and whatever lies in its old place isn't taken for the file of this log.
bool KeptDatabase::MoveRowsIntoFile() {
  try {
    SqliteStatement checkpoint = database_->Prepare("PRAGMA wal_checkpoint(TRUNCATE)");
    const bool blocked = !checkpoint.Step() || checkpoint.Value(0) != LedgerValue(0.0);
    if (!blocked) log_pages_ = 0;
    return !blocked;
  } catch (const LedgerError&) {
    return false;
  }
}

}  // namespace velumar
