#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>

#include "base/raw_file.h"

struct sqlite3;
struct sqlite3_stmt;

namespace velumar {

// Looks at files by their UTF-8 paths without opening them: closing a file again would drop
// SQLite's locks on it. On Windows locks belong to a handle, so opening another one is harmless.

// The path of a file with all links resolved. The file may be missing, its folder may not.
std::string CanonicalPath(const std::string& path);
// Of the file that a path leads to; nullopt if there is none, or none that can be seen.
std::optional<FileStamp> StampOfFile(const std::string& path);
std::optional<FileIdentity> IdentityOfFile(const std::string& path);
bool IsRegularFile(const std::string& path);
// True for a folder, a pipe or a device.
bool IsNotAFile(const std::string& path);
// True for a regular file with more than one name.
bool HasHardLinks(const std::string& path);
// True for a regular file that is not empty.
bool HoldsBytes(const std::string& path);

// A database error; the text names the file.
class LedgerError : public std::runtime_error {
 public:
  explicit LedgerError(const std::string& text, bool in_use = false)
      : std::runtime_error(text), in_use_(in_use) {}
  // True if another connection holds the lock.
  bool InUse() const { return in_use_; }

 private:
  bool in_use_;
};

// A column value: null, a number or UTF-8 text.
using LedgerValue = std::variant<std::monostate, double, std::string>;

// The text or number of a value of that type; empty or 0 for any other.
template <typename Type>
Type ValueAs(const LedgerValue& value) {
  const auto* const held = std::get_if<Type>(&value);
  return held == nullptr ? Type() : *held;
}

// The whole number of a value, rounded towards 0; 0 for a text and for one that doesn't fit.
int WholeOf(const LedgerValue& value);
int WholeOf(double number);  // the same

// Null for nothing.
template <typename Number>
LedgerValue OrNull(std::optional<Number> number) {
  return number ? LedgerValue(static_cast<double>(*number)) : LedgerValue();
}

// A prepared statement, read row by row.
class SqliteStatement {
 public:
  SqliteStatement(sqlite3* database, const std::string& file, std::string_view sql);

  void Bind(std::span<const LedgerValue> values);               // one for each "?"
  void BindBytes(int place, std::span<const std::byte> bytes);  // places count from 1
  // Returns false after the last row.
  bool Step();
  // Prepares it to be bound and run again.
  void Reset();
  int Columns() const;
  std::string ColumnName(int column) const;  // columns count from 0
  LedgerValue Value(int column) const;
  // Without a copy, for large tables. A value of another type counts as 0 or empty; a number of a
  // damaged ledger that is no int counts as 0.
  std::optional<double> Number(int column) const;
  int Whole(int column) const;
  std::string_view Text(int column) const;             // until the next step
  std::span<const std::byte> Bytes(int column) const;  // until the next step

 private:
  struct Finalize {
    void operator()(sqlite3_stmt* statement) const;
  };
  [[noreturn]] void Fail() const;

  sqlite3* database_;
  std::string file_;
  std::unique_ptr<sqlite3_stmt, Finalize> statement_;
};

inline constexpr std::string_view kInMemory = ":memory:";

// One SQLite file, closed with the object. Opens only regular files of up to 1 GiB, and never runs
// triggers or views. Every call can throw LedgerError.
class SqliteDatabase {
 public:
  enum class Mode : std::uint8_t {
    kCreate,
    // Creates and changes nothing, not even the files next to it, so a read-only folder is enough.
    kReadOnly
  };

  SqliteDatabase(const std::string& file, Mode mode);

  void Execute(const std::string& sql);
  // Runs one statement, and caches it: compiling the inserts of an order takes longer than running
  // them. Returns the first column of the first row; null if there is no row.
  LedgerValue Run(std::string_view sql, std::span<const LedgerValue> values);
  LedgerValue Run(std::string_view sql, std::initializer_list<LedgerValue> values = {}) {
    return Run(sql, std::span(values.begin(), values.size()));
  }
  // The same for a statement that is not worth caching.
  LedgerValue FirstValue(std::string_view sql,
                         std::initializer_list<LedgerValue> values = {}) const;
  bool HasTable(const std::string& name) const;
  // False also if there is no such table.
  bool HasColumn(const std::string& table, const std::string& column) const;
  SqliteStatement Prepare(std::string_view sql) const { return {handle_.get(), file_, sql}; }
  bool ReadOnly() const;
  std::int64_t LastRow() const;
  // The file as passed to the constructor, and its canonical path.
  const std::string& File() const { return file_; }
  const std::string& Path() const { return path_; }
  // Returns true if the file was opened read-only while nobody wrote it, and has changed since.
  // It must be opened again.
  bool Outdated() const;
  // For calls that this class does not wrap.
  sqlite3* Handle() const { return handle_.get(); }

 private:
  struct Close {
    void operator()(sqlite3* database) const;
  };

  void Open(const std::string& name, int flags);
  void OpenReadOnly();

  std::string file_;
  std::string path_;
  std::optional<FileStamp> unlocked_;  // as it was when opened without locks
  std::unique_ptr<sqlite3, Close> handle_;
  std::map<std::string, SqliteStatement, std::less<>> prepared_;  // by SQL text
};

// Rolls back in the destructor unless Commit was called.
class SqliteTransaction {
 public:
  explicit SqliteTransaction(SqliteDatabase& database);
  ~SqliteTransaction();
  SqliteTransaction(const SqliteTransaction&) = delete;
  SqliteTransaction& operator=(const SqliteTransaction&) = delete;
  void Commit();

 private:
  SqliteDatabase& database_;
  bool open_ = true;
};

}  // namespace velumar
