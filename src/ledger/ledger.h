#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "ledger/kept_database.h"

namespace velumar {

// The ledger's 22 columns, in the order of the inserts.
const std::vector<std::string>& PortfolioColumns();

inline constexpr std::string_view kPortfolioTable = "MyPortfolio";
inline constexpr std::string_view kProfileTable = "Portfolio_Profile";

// What a run began with, kept beside its rows.
struct LedgerRun {
  std::string directory;
  std::string symbol;
  std::string interval;
  std::string start_date;  // of the start bar, yyyymmdd
  std::string start_time;
  std::string market;  // "stock" or "futures"
  double starting_money = 0;
  double margin = 0;
  double money_per_point = 0;
};

// What an order's row doesn't tell, kept beside it.
struct LedgerDetail {
  double quantity = 0;
  double vat = 0;
  int bar_index = 0;
  int newest_shown = 0;           // newest bar that the trader had seen by then
  std::optional<double> close{};  // what the order was dealt at; the row holds two decimals of it
};

// A holding that too large an offset wiped out; it left no row.
struct LedgerWiped {
  std::string position;  // "Offset Long" or "Offset Short"
  double held = 0;
  double average = 0;
  // The bar, as a row has it.
  std::string date;
  std::string time;
  double price = 0;
};

// How dates are handed out: ISO text in, display text out.
using LedgerDateText = std::function<std::string(std::string_view iso_date)>;

// The one connection. It may be closed: then everything that writes throws LedgerError with the
// reason, and queries do where there is no file to read.
class LedgerConnection {
 public:
  explicit LedgerConnection(LedgerDateText date_text) : date_text_(std::move(date_text)) {}

  bool CanRead() const { return kept_ || read_; }
  bool CanWrite() const { return kept_ != nullptr; }
  // Why orders can't be kept; empty when they can.
  const std::string& WhyNot() const { return why_not_; }
  const std::string& File() const { return file_; }

  SqliteDatabase& ForReading();
  // Throws, too, once the file has been moved, deleted, replaced or cut short.
  SqliteDatabase& ForWriting();
  std::string DateText(std::string_view iso_date) const { return date_text_(iso_date); }

 private:
  friend void LedgerOpen(LedgerConnection& connection, const std::string& data_source);
  friend void LedgerClose(LedgerConnection& connection);
  friend void LedgerOpenToRead(LedgerConnection& connection, const std::string& data_source);

  void OpenToRead();

  LedgerDateText date_text_;
  std::string file_;
  std::string why_not_;
  std::unique_ptr<KeptDatabase> kept_;    // while this process keeps the ledger
  std::unique_ptr<SqliteDatabase> read_;  // else, where it can be read
};

// The rows of one select, fetched whole.
struct LedgerRecordset {
  std::vector<std::string> columns;
  std::vector<std::vector<LedgerValue>> rows;

  bool Empty() const { return rows.empty(); }
};

// Opens the file, made with its tables when it is missing; ":memory:" keeps nothing on disk. Never
// throws: a file that is no ledger, is damaged, read-only or in use by another program stays as it
// is, and WhyNot says so.
void LedgerOpen(LedgerConnection& connection, const std::string& data_source);

// Opens an existing file to read it, also in a folder or on a disk that can't be written, and
// leaves no trace there. Throws LedgerError.
void LedgerOpenToRead(LedgerConnection& connection, const std::string& data_source);

// Lets go of the file; another program may keep it from here on.
void LedgerClose(LedgerConnection& connection);

// Runs a select. Values of the column ActDate come as the user's date text; joined dates and times
// through format(…, 'dd-mmm-yy HH:MM') with English month names. Rows of equal date and time come
// in the order of their insertion, or against it where the select descends. With the number of an
// archived run, MyPortfolio stands for the rows of that run. No more than `most_rows` are fetched.
LedgerRecordset LedgerQuery(LedgerConnection& connection, std::string_view select_text,
                            int archived_run = 0, std::size_t most_rows = SIZE_MAX);

// Appends one row; values stand for the columns in their order. Safe on the disk when it returns.
void LedgerInsert(LedgerConnection& connection, std::string_view table,
                  const std::vector<std::string>& columns, const std::vector<LedgerValue>& values);
// The same for an order's row, with its detail, both or neither.
void LedgerInsertOrder(LedgerConnection& connection, const std::vector<LedgerValue>& values,
                       const LedgerDetail& detail);

// Empties a table. The rows of MyPortfolio go to the archive of their run first.
void LedgerDeleteAll(LedgerConnection& connection, std::string_view table);

// Begins a run: MyPortfolio is emptied as above, and the rows from here on belong to the run. All
// of it happens or nothing.
void LedgerBeginRun(LedgerConnection& connection, const LedgerRun& run);
// Notes a wiped holding behind the newest row; the detail's quantity is the one asked for.
void LedgerNoteWiped(LedgerConnection& connection, const LedgerWiped& wiped,
                     const LedgerDetail& detail);

}  // namespace velumar
