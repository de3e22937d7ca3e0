#include "ledger/owned_database.h"

#include <sqlite3.h>

#include <array>

namespace velumar {

namespace {

double NumberOf(const SqliteDatabase& database, std::string_view pragma) {
  return std::get<double>(database.FirstValue(pragma));
}

// "table", "view" or "virtual"; null if nothing has this name.
LedgerValue TypeOf(const SqliteDatabase& database, std::string_view table) {
  return database.FirstValue(
      "SELECT type FROM pragma_table_list WHERE schema = 'main' AND name = ? COLLATE NOCASE",
      {std::string(table)});
}

void RequireColumns(const SqliteDatabase& database, const TableSchema& table) {
  // SQLite itself parses the column names from the declaration.
  SqliteDatabase scratch(std::string(kInMemory), SqliteDatabase::Mode::kCreate);
  CreateTables(scratch, {&table, 1});
  const std::string name(table.name);
  const LedgerValue columns = scratch.FirstValue(
      "SELECT group_concat('[' || name || ']') FROM pragma_table_info(?)", {name});
  database.Prepare("SELECT rowid, " + std::get<std::string>(columns) + " FROM main." + name);
}

// Throws if the table is not as CreateTables creates it, or if another program added to it.
// A trigger would change our rows, a unique index would drop some.
void RequireUnchanged(const SqliteDatabase& database, const TableSchema& table) {
  const std::string name(table.name);
  const LedgerValue type = TypeOf(database, name);
  const auto* const found = std::get_if<std::string>(&type);
  if (found == nullptr) return;
  if (*found != "table") {
    throw LedgerError(database.File() + ": " + name + " must be a table, but is a " + *found);
  }
  const LedgerValue trigger = database.FirstValue(
      "SELECT name FROM sqlite_schema WHERE type = 'trigger' AND tbl_name = ? COLLATE NOCASE",
      {name});
  if (const auto* const its_name = std::get_if<std::string>(&trigger)) {
    throw LedgerError(database.File() + ": another program added the trigger \"" + *its_name +
                      "\" to the table " + name + "; remove it to use this file");
  }
  RequireColumns(database, table);
  if (database.FirstValue("SELECT 1 FROM pragma_index_list(?) WHERE [unique] <> 0", {name}) !=
      LedgerValue()) {
    throw LedgerError(database.File() + ": another program added a unique index to the table " +
                      name + "; remove it to use this file");
  }
}

// Returns false for a database without any tables; throws unless all others are of this kind.
bool HasTablesOf(const SqliteDatabase& database, const DatabaseKind& kind) {
  const std::string& file = database.File();
  const bool empty =
      database.FirstValue(
          "SELECT 1 FROM sqlite_schema WHERE name NOT LIKE 'sqlite!_%' ESCAPE '!'") ==
      LedgerValue();
  const bool main_table = TypeOf(database, kind.tables.front().name) != LedgerValue();
  if (NumberOf(database, "PRAGMA application_id") != 0 || (!empty && !main_table)) {
    throw LedgerError(file + ": this SQLite file belongs to another program, it is not a " +
                      std::string(kind.what));
  }
  if (NumberOf(database, "PRAGMA user_version") > static_cast<double>(kind.migrations.size())) {
    throw LedgerError(file + ": this " + std::string(kind.what) +
                      " was created by a newer version of Velumar");
  }
  for (const TableSchema& table : kind.tables) RequireUnchanged(database, table);
  return !empty;
}

void RequireIntact(const SqliteDatabase& database) {
  if (database.FirstValue("PRAGMA quick_check(1)") != LedgerValue("ok")) {
    throw LedgerError(database.File() + ": the database is damaged");
  }
}

// Throws unless the file is of this kind or does not exist yet.
void RequireOwnable(const std::string& file, const std::string& path, const DatabaseKind& kind) {
  if (HoldsBytes(path) || IsNotAFile(path)) {
    const SqliteDatabase present(file, SqliteDatabase::Mode::kReadOnly);
    HasTablesOf(present, kind);
    RequireIntact(present);
  } else if (HoldsBytes(path + "-wal")) {
    throw LedgerError(path + "-wal: contains rows of a " + std::string(kind.what) +
                      " that is no longer next to it; move the two files together");
  }
  if (HasHardLinks(path)) {
    throw LedgerError(file + ": the file has a second name (a hard link), under which another " +
                      "program would miss the newest rows; copy it instead");
  }
}

// The caller holds a transaction, so a file is of one version or of the other.
void Migrate(SqliteDatabase& database, const DatabaseKind& kind) {
  const auto version = static_cast<std::size_t>(NumberOf(database, "PRAGMA user_version"));
  if (version >= kind.migrations.size()) return;
  for (const auto migrate : kind.migrations.subspan(version)) migrate(database);
  database.Execute("PRAGMA user_version=" + std::to_string(kind.migrations.size()));
}

std::unique_ptr<SqliteDatabase> TakeOwnership(const std::string& file, const std::string& path,
                                              const DatabaseKind& kind) {
  const std::string lock = path + "-owner";
  try {
    auto owner = std::make_unique<SqliteDatabase>(lock, SqliteDatabase::Mode::kCreate);
    // Nothing is ever written to it, and a journal would remain after a crash.
    owner->Execute("PRAGMA busy_timeout=0; PRAGMA journal_mode=OFF");
    owner->Execute("BEGIN EXCLUSIVE");
    return owner;
  } catch (const LedgerError& error) {
    if (error.InUse()) {
      throw LedgerError(file + ": the " + std::string(kind.what) + " is in use by another program",
                        true);
    }
    if (!StampOfFile(lock)) {
      throw LedgerError(file + ": its folder is not writable");
    }
    throw;
  }
}

// The write-ahead log is checkpointed once it has this many pages.
constexpr int kCheckpointPages = 1000;

constexpr std::int64_t kLogHeader = 32;
constexpr std::int64_t kPageHeader = 24;

// Counts the pages of the write-ahead log, and checkpoints it as SQLite does without a hook.
int AfterCommit(void* pages, sqlite3* database, const char*, int count) {
  *static_cast<int*>(pages) = count;
  if (count >= kCheckpointPages) {
    sqlite3_wal_checkpoint_v2(database, nullptr, SQLITE_CHECKPOINT_PASSIVE, nullptr, nullptr);
  }
  return SQLITE_OK;
}

// Lengthens the log with zeros, which SQLite takes for unused space, to the size that it has before
// a checkpoint. A commit then overwrites bytes: making a file longer takes the disk half as long
// again. The caller holds a transaction, so that no other program writes to the log. If the disk is
// full, the log stays as it is.
void LengthenLog(SqliteDatabase& database, std::int64_t page_size) {
  static constexpr std::array<char, 65536> kZeros{};
  sqlite3_file* log = nullptr;
  sqlite3_file_control(database.Handle(), "main", SQLITE_FCNTL_JOURNAL_POINTER, &log);
  sqlite3_int64 size = 0;
  if (log == nullptr || log->pMethods == nullptr ||
      log->pMethods->xFileSize(log, &size) != SQLITE_OK) {
    return;
  }
  const std::int64_t wanted = kLogHeader + kCheckpointPages * (kPageHeader + page_size);
  for (int written = SQLITE_OK; written == SQLITE_OK && size < wanted; size += kZeros.size()) {
    written = log->pMethods->xWrite(log, kZeros.data(), int{kZeros.size()}, size);
  }
}

}  // namespace

void CreateTables(SqliteDatabase& database, std::span<const TableSchema> tables) {
  for (const TableSchema& table : tables) {
    database.Execute("CREATE TABLE IF NOT EXISTS " + std::string(table.name) + " (" +
                     std::string(table.columns) + ")");
  }
}

std::unique_ptr<SqliteDatabase> OpenReadOnly(const std::string& file, const DatabaseKind& kind) {
  auto database = std::make_unique<SqliteDatabase>(file, SqliteDatabase::Mode::kReadOnly);
  if (!HasTablesOf(*database, kind)) {
    throw LedgerError(file + ": not a " + std::string(kind.what) + ", the file has no tables");
  }
  RequireIntact(*database);
  return database;
}

OwnedDatabase::OwnedDatabase(const std::string& file, const DatabaseKind& kind) {
  const bool on_disk = file != kInMemory;
  if (on_disk) {
    const std::string path = CanonicalPath(file);
    RequireOwnable(file, path, kind);
    owner_ = TakeOwnership(file, path, kind);
  }
  database_ = std::make_unique<SqliteDatabase>(file, SqliteDatabase::Mode::kCreate);
  if (database_->ReadOnly()) throw LedgerError(file + ": the file is read-only");
  Configure(kind);
  if (on_disk) {
    Watch(file);  // by the given name: a link that now leads elsewhere counts as replaced
    for (const char* suffix : {"-wal", "-shm", "-owner"}) Watch(database_->Path() + suffix);
  }
}

void OwnedDatabase::Configure(const DatabaseKind& kind) {
  // A new file only. Each table that a commit changes costs a page, and rows are short.
  database_->Execute("PRAGMA page_size=1024");
  database_->Execute("PRAGMA journal_mode=WAL");
  // A commit survives a power failure.
  database_->Execute("PRAGMA synchronous=FULL");
  sqlite3_wal_hook(database_->Handle(), AfterCommit, &log_pages_);
  SqliteTransaction transaction(*database_);
  Migrate(*database_, kind);
  page_size_ = static_cast<std::int64_t>(NumberOf(*database_, "PRAGMA page_size"));
  LengthenLog(*database_, page_size_);
  transaction.Commit();
}

void OwnedDatabase::Watch(const std::string& file) {
  // There is no log on a file system without shared memory.
  if (const auto identity = IdentityOfFile(file)) {
    watched_.push_back({file, *identity, file.ends_with("-wal")});
  }
}

SqliteDatabase& OwnedDatabase::ForWriting() {
  for (const WatchedFile& file : watched_) {
    const auto now = IdentityOfFile(file.path);
    if (!now || now->device != file.identity.device || now->inode != file.identity.inode) {
      Checkpoint();
      throw LedgerError(
          file.path +
          (now ? ": the file was replaced by another one" : ": the file was moved or deleted") +
          "; put it back, or restart the program");
    }
    if (file.is_log && now->size < MinimumLogSize() && !Checkpoint()) {
      throw LedgerError(file.path + ": another program truncated the file; restart the program " +
                        "and check the newest rows");
    }
  }
  return *database_;
}

std::int64_t OwnedDatabase::MinimumLogSize() const {
  return log_pages_ == 0 ? 0 : kLogHeader + log_pages_ * (kPageHeader + page_size_);
}

// Writes the rows of the log to the file that is still open, wherever it is now. A file that has
// replaced it gets none of them.
bool OwnedDatabase::Checkpoint() {
  try {
    if (database_->FirstValue("PRAGMA wal_checkpoint(TRUNCATE)") != LedgerValue(0.0)) return false;
    log_pages_ = 0;
    return true;
  } catch (const LedgerError&) {
    return false;
  }
}

}  // namespace velumar
