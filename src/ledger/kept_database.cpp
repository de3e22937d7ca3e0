#include "ledger/kept_database.h"

#include <sqlite3.h>

namespace velumar {

namespace {

// Counts the pages of the write-ahead log, and checkpoints it as SQLite does without a hook.
int AfterCommit(void* pages, sqlite3* database, const char*, int count) {
  constexpr int kManyPages = 1000;
  *static_cast<int*>(pages) = count;
  if (count >= kManyPages) {
    sqlite3_wal_checkpoint_v2(database, nullptr, SQLITE_CHECKPOINT_PASSIVE, nullptr, nullptr);
  }
  return SQLITE_OK;
}

void RequireSound(const SqliteDatabase& database) {
  if (database.FirstValue("PRAGMA quick_check(1)") != LedgerValue("ok")) {
    throw LedgerError(database.File() + ": the database is damaged");
  }
}

// Throws unless the file is of this kind or there is none yet.
void RequireKeepable(const std::string& file, const std::string& path, const DatabaseKind& kind) {
  const FileIdentity found = IdentityOf(path);
  if (found.kind == FileIdentity::Kind::kOther || found.HoldsBytes()) {
    const SqliteDatabase present(file, SqliteDatabase::Mode::kReadOnly);
    HasOwnTables(present, kind.tables, kind.what);
    RequireSound(present);
  } else if (IdentityOf(path + "-wal").HoldsBytes()) {
    throw LedgerError(path + "-wal: it holds rows of a " + std::string(kind.what) +
                      " that is no longer next to it; move the two files together");
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
    // Nothing is ever written to it. A journal would remain after a kill.
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
    Watch(file);  // by the name that was given: a link that now leads elsewhere counts as replaced
    for (const char* suffix : {"-wal", "-shm", "-owner"}) Watch(database_->Path() + suffix);
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
  page_size_ =
      static_cast<std::uint64_t>(std::get<double>(database_->FirstValue("PRAGMA page_size")));
}

void KeptDatabase::Watch(const std::string& file) {
  // There is no log on a file system without shared memory.
  const FileIdentity identity = IdentityOf(file);
  if (identity.kind == FileIdentity::Kind::kMissing) return;
  watched_.push_back({file, identity, file.ends_with("-wal")});
}

SqliteDatabase& KeptDatabase::ForWriting() {
  for (const Watched& file : watched_) {
    const FileIdentity now = IdentityOf(file.path);
    if (!now.SameFile(file.identity)) {
      MoveRowsIntoFile();
      throw LedgerError(file.path +
                        (now.kind == FileIdentity::Kind::kMissing
                             ? ": the file was moved or deleted"
                             : ": the file was replaced by another one") +
                        "; put it back, or start the program again");
    }
    if (file.is_log && now.size < LogSize() && !MoveRowsIntoFile()) {
      throw LedgerError(file.path + ": another program has cut the file short; start the program " +
                        "again and check the newest rows");
    }
  }
  return *database_;
}

std::uint64_t KeptDatabase::LogSize() const {
  constexpr std::uint64_t kLogHeader = 32;
  constexpr std::uint64_t kPageHeader = 24;
  const auto pages = static_cast<std::uint64_t>(log_pages_);
  return pages == 0 ? 0 : kLogHeader + pages * (kPageHeader + page_size_);
}

// Saves the rows that only the log holds to the file that is still open, wherever it is now. A file
// that has taken its place then gets none of them.
bool KeptDatabase::MoveRowsIntoFile() {
  try {
    if (database_->FirstValue("PRAGMA wal_checkpoint(TRUNCATE)") != LedgerValue(0.0)) return false;
    log_pages_ = 0;
    return true;
  } catch (const LedgerError&) {
    return false;
  }
}

}  // namespace velumar
