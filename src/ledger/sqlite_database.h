#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>

#include "ledger/file_identity.h"

struct sqlite3;
struct sqlite3_stmt;

namespace velumar {

// A failure of the database, in words that name the file.
class LedgerError : public std::runtime_error {
 public:
  explicit LedgerError(const std::string& text, bool in_use = false)
      : std::runtime_error(text), in_use_(in_use) {}
  // Another connection holds what was asked for.
  bool InUse() const { return in_use_; }

 private:
  bool in_use_;
};

// A value of a column: null, a number or a UTF-8 text.
using LedgerValue = std::variant<std::monostate, double, std::string>;

// One row after another of a prepared statement.
class SqliteStatement {
 public:
  SqliteStatement(sqlite3* database, const std::string& file, std::string_view sql);

  void Bind(int place, const LedgerValue& value);  // places count from 1
  // False behind the last row.
  bool Step();
  int Columns() const;
  std::string ColumnName(int column) const;  // columns count from 0
  LedgerValue Value(int column) const;

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

// One SQLite file, closed with the object. Only regular files are opened, of up to 1 GiB, and of
// another program's triggers and views none runs. Every call throws LedgerError.
class SqliteDatabase {
 public:
  enum class Mode : std::uint8_t {
    kCreate,
    // Nothing is created or changed, neither in the file nor next to it, so a read-only folder is
    // as good as any.
    kReadOnly
  };

  SqliteDatabase(const std::string& file, Mode mode);

  void Execute(const std::string& sql);
  SqliteStatement Prepare(std::string_view sql) const { return {handle_.get(), file_, sql}; }
  bool ReadOnly() const;
  std::int64_t LastRow() const;
  // As it was named to the constructor, and the one name behind all links.
  const std::string& File() const { return file_; }
  const std::string& Path() const { return path_; }
  // True once a file that nobody wrote when it was opened to be read has changed: then it has to
  // be opened again.
  bool Outdated() const;
  // For what this class doesn't wrap.
  sqlite3* Handle() const { return handle_.get(); }

 private:
  struct Close {
    void operator()(sqlite3* database) const;
  };

  void Open(const std::string& name, int flags);
  void OpenToRead();

  std::string file_;
  std::string path_;
  std::optional<FileIdentity> unchanged_;  // while it can be read without locks
  std::unique_ptr<sqlite3, Close> handle_;
};

// Changes between construction and Commit are taken back unless Commit was reached.
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
