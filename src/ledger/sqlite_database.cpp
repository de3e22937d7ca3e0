#include "ledger/sqlite_database.h"

#include <sqlite3.h>

#include <cctype>
#include <cmath>
#include <filesystem>
#include <limits>

#include "base/ignoring.h"
#include "base/paths.h"

namespace velumar {

namespace fs = std::filesystem;

namespace {

// Names of files on Linux may contain a backslash, so this is not NativePath.
fs::path FromUtf8(const std::string& path) {
  return fs::path(std::u8string(path.begin(), path.end()));
}

[[noreturn]] void Throw(const std::string& file, sqlite3* database) {
  throw LedgerError(file + ": " + sqlite3_errmsg(database),
                    sqlite3_errcode(database) == SQLITE_BUSY);
}

// Other processes hold a read lock only briefly.
constexpr int kBusyTimeoutMs = 2000;

// Larger than any ledger (1 GiB is some four million orders) and than any value in it.
constexpr std::int64_t kLargestFile = std::int64_t{1} << 30;
constexpr int kLongestValue = 1 << 20;

// SQLite opens these whatever they are, and would wait on a pipe forever.
void RequireRegularFiles(const std::string& file, const std::string& path) {
  for (const char* suffix : {"", "-wal", "-shm", "-journal"}) {
    if (IsNotAFile(path + suffix)) {
      throw LedgerError((*suffix == '\0' ? file : path + suffix) +
                        ": not a regular file, but a folder, a pipe or a device");
    }
  }
  const auto found = StampOfFile(path);
  if (found && found->size > kLargestFile) {
    throw LedgerError(file + ": the file is larger than any ledger (1 GiB)");
  }
}

// The path as a "file:" URI.
std::string Uri(const std::string& path) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string uri = "file:";
  for (const char byte : path) {
    const auto value = static_cast<unsigned char>(byte);
    const bool plain =
        std::isalnum(value) != 0 || std::string_view("/._-:").find(byte) != std::string_view::npos;
    uri +=
        plain ? std::string(1, byte) : std::string{'%', kDigits[value >> 4U], kDigits[value & 15U]};
  }
  return uri;
}

// The name of SQLite's file access that takes no locks.
std::string LocklessVfs() { return std::string(sqlite3_vfs_find(nullptr)->zName) + "-none"; }

}  // namespace

// A damaged ledger may hold any number.
int WholeOf(double number) {
  const double most = std::numeric_limits<int>::max();
  return std::abs(number) <= most ? static_cast<int>(number) : 0;
}

int WholeOf(const LedgerValue& value) { return WholeOf(ValueAs<double>(value)); }

std::string CanonicalPath(const std::string& path) {
  constexpr int kMostLinks = 40;
  std::error_code error;
  fs::path file = fs::absolute(FromUtf8(path), error);
  // fs::canonical fails for a link whose target does not exist yet.
  for (int links = 0; links < kMostLinks && fs::is_symlink(file, error); ++links) {
    file = file.parent_path() / fs::read_symlink(file, error);
  }
  const fs::path folder = fs::canonical(file.parent_path(), error);
  return PathText(error ? file : folder / file.filename());
}

std::optional<FileStamp> StampOfFile(const std::string& path) { return StampOf(FromUtf8(path)); }

std::optional<FileIdentity> IdentityOfFile(const std::string& path) {
  return IdentityOf(FromUtf8(path));
}

bool IsRegularFile(const std::string& path) {
  std::error_code missing;
  return fs::is_regular_file(FromUtf8(path), missing);
}

bool IsNotAFile(const std::string& path) {
  std::error_code missing;
  const fs::file_status status = fs::status(FromUtf8(path), missing);
  return fs::exists(status) && !fs::is_regular_file(status);
}

bool HasHardLinks(const std::string& path) {
  std::error_code error;
  return IsRegularFile(path) && fs::hard_link_count(FromUtf8(path), error) > 1 && !error;
}

bool HoldsBytes(const std::string& path) {
  const auto stamp = StampOfFile(path);
  return stamp && stamp->size > 0 && IsRegularFile(path);
}

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

void SqliteStatement::Bind(std::span<const LedgerValue> values) {
  int place = 0;
  for (const LedgerValue& value : values) {
    ++place;
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
}

void SqliteStatement::BindBytes(int place, std::span<const std::byte> bytes) {
  if (sqlite3_bind_blob64(statement_.get(), place, bytes.data(), bytes.size(), SQLITE_TRANSIENT) !=
      SQLITE_OK) {
    Fail();
  }
}

bool SqliteStatement::Step() {
  const int code = sqlite3_step(statement_.get());
  if (code == SQLITE_ROW) return true;
  if (code != SQLITE_DONE) Fail();
  return false;
}

// The result only repeats the error of the last Step.
void SqliteStatement::Reset() { sqlite3_reset(statement_.get()); }

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

std::optional<double> SqliteStatement::Number(int column) const {
  const int type = sqlite3_column_type(statement_.get(), column);
  if (type != SQLITE_INTEGER && type != SQLITE_FLOAT) return std::nullopt;
  return sqlite3_column_double(statement_.get(), column);
}

int SqliteStatement::Whole(int column) const { return WholeOf(Number(column).value_or(0)); }

std::string_view SqliteStatement::Text(int column) const {
  if (sqlite3_column_type(statement_.get(), column) != SQLITE_TEXT) return {};
  const auto bytes = Bytes(column);
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

std::span<const std::byte> SqliteStatement::Bytes(int column) const {
  const auto* bytes = static_cast<const std::byte*>(sqlite3_column_blob(statement_.get(), column));
  return {bytes, static_cast<std::size_t>(sqlite3_column_bytes(statement_.get(), column))};
}

SqliteDatabase::SqliteDatabase(const std::string& file, Mode mode)
    : file_(file), path_(file == kInMemory ? file : CanonicalPath(file)) {
  if (file != kInMemory) RequireRegularFiles(file_, path_);
  if (mode == Mode::kReadOnly) {
    OpenReadOnly();
  } else {
    Open(path_, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
  }
}

void SqliteDatabase::Open(const std::string& name, int flags) {
  sqlite3* database = nullptr;
  // Only one thread at a time uses a connection; a mutex for each value read would take as long as
  // reading it.
  const int code = sqlite3_open_v2(name.c_str(), &database, flags | SQLITE_OPEN_NOMUTEX, nullptr);
  handle_.reset(database);
  if (code != SQLITE_OK) Throw(file_, database);
  sqlite3_busy_timeout(database, kBusyTimeoutMs);
  sqlite3_limit(database, SQLITE_LIMIT_LENGTH, kLongestValue);
  for (const int trust : {SQLITE_DBCONFIG_TRUSTED_SCHEMA, SQLITE_DBCONFIG_ENABLE_TRIGGER,
                          SQLITE_DBCONFIG_ENABLE_VIEW}) {
    sqlite3_db_config(database, trust, 0, nullptr);
  }
}

// If the write-ahead log is empty, nobody is writing and the file is read without locks. Rows in
// the log belong to a running program, whose locks are respected, or to one that died. If the log's
// index is missing, SQLite builds it in memory.
void SqliteDatabase::OpenReadOnly() {
  constexpr int kFlags = SQLITE_OPEN_READONLY | SQLITE_OPEN_URI;
  const auto found = StampOfFile(path_);
  if (!found) throw LedgerError(file_ + ": no such file");
  if (!HoldsBytes(path_ + "-wal")) {
    Open(Uri(path_) + "?immutable=1", kFlags);
    unlocked_ = found;
  } else if (IsRegularFile(path_ + "-shm")) {
    Open(Uri(path_) + "?readonly_shm=1", kFlags);
  } else {
    Open(Uri(path_) + "?vfs=" + LocklessVfs(), kFlags);
    sqlite3_db_config(handle_.get(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
    Execute("PRAGMA locking_mode=EXCLUSIVE");
  }
}

bool SqliteDatabase::Outdated() const {
  return unlocked_ && (StampOfFile(path_) != unlocked_ || HoldsBytes(path_ + "-wal"));
}

void SqliteDatabase::Close::operator()(sqlite3* database) const { sqlite3_close_v2(database); }

void SqliteDatabase::Execute(const std::string& sql) {
  if (sqlite3_exec(handle_.get(), sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) {
    Throw(file_, handle_.get());
  }
}

LedgerValue SqliteDatabase::Run(std::string_view sql, std::span<const LedgerValue> values) {
  auto found = prepared_.find(sql);
  if (found == prepared_.end()) found = prepared_.emplace(sql, Prepare(sql)).first;
  SqliteStatement& statement = found->second;
  statement.Reset();
  statement.Bind(values);
  LedgerValue first = statement.Step() ? statement.Value(0) : LedgerValue();
  statement.Reset();  // a select that isn't at its end would hold its lock
  return first;
}

LedgerValue SqliteDatabase::FirstValue(std::string_view sql,
                                       std::initializer_list<LedgerValue> values) const {
  SqliteStatement select = Prepare(sql);
  select.Bind(values);
  return select.Step() ? select.Value(0) : LedgerValue();
}

bool SqliteDatabase::HasTable(const std::string& name) const {
  return FirstValue("SELECT 1 FROM sqlite_schema WHERE type = 'table' AND name = ?", {name}) !=
         LedgerValue();
}

bool SqliteDatabase::HasColumn(const std::string& table, const std::string& column) const {
  return FirstValue("SELECT 1 FROM pragma_table_info(?) WHERE name = ?", {table, column}) !=
         LedgerValue();
}

bool SqliteDatabase::ReadOnly() const { return sqlite3_db_readonly(handle_.get(), "main") == 1; }

std::int64_t SqliteDatabase::LastRow() const { return sqlite3_last_insert_rowid(handle_.get()); }

SqliteTransaction::SqliteTransaction(SqliteDatabase& database) : database_(database) {
  database_.Run("BEGIN IMMEDIATE");
}

SqliteTransaction::~SqliteTransaction() {
  // It fails if SQLite has already rolled back.
  if (open_) IgnoringErrors([this] { database_.Run("ROLLBACK"); });
}

void SqliteTransaction::Commit() {
  database_.Run("COMMIT");
  open_ = false;
}

}  // namespace velumar
