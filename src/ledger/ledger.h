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

#include "base/ledger_scope.h"
#include "ledger/owned_database.h"
#include "ledger/sessions.h"

namespace velumar {

// The ledger's 22 columns, in the order of the inserts.
const std::vector<std::string>& PortfolioColumns();

inline constexpr std::string_view kPortfolioTable = "MyPortfolio";
inline constexpr std::string_view kProfileTable = "Portfolio_Profile";

// The state that a run started with, stored next to its rows.
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

// What an order's row does not say, stored next to it.
struct LedgerDetail {
  double quantity = 0;
  double vat = 0;
  int bar_index = 0;
  int newest_shown = 0;           // newest bar that the trader had seen
  std::optional<double> close{};  // the fill price; the row has two decimals of it
};

// A holding that was wiped out by an offset larger than the holding. It has no row.
struct LedgerWiped {
  std::string position;  // "Offset Long" or "Offset Short"
  double held = 0;
  double average = 0;
  // The bar, in the format of a row.
  std::string date;
  std::string time;
  double price = 0;
};

// Converts an ISO date to the date text that queries return.
using LedgerDateText = std::function<std::string(std::string_view iso_date)>;

struct LedgerPlan;
struct LedgerTrade;

// The connection to the ledger. While it is closed or read-only, everything that writes throws
// LedgerError with the reason; queries throw only if there is no file to read.
class LedgerConnection {
 public:
  explicit LedgerConnection(LedgerDateText date_text) : date_text_(std::move(date_text)) {}

  bool CanRead() const { return owned_ || read_; }
  bool CanWrite() const { return owned_ != nullptr; }
  // Why orders can't be saved; empty if they can.
  const std::string& WhyNot() const { return why_not_; }
  const std::string& File() const { return file_; }

  SqliteDatabase& ForReading();
  // Also throws once the file was moved, deleted, replaced or truncated.
  SqliteDatabase& ForWriting();
  std::string DateText(std::string_view iso_date) const { return date_text_(iso_date); }

 private:
  friend void LedgerOpen(LedgerConnection& connection, const std::string& data_source);
  friend void LedgerClose(LedgerConnection& connection);
  friend void LedgerOpenToRead(LedgerConnection& connection, const std::string& data_source);

  void OpenReadOnly();

  LedgerDateText date_text_;
  std::string file_;
  std::string why_not_;
  std::unique_ptr<OwnedDatabase> owned_;  // while this process owns the ledger
  std::unique_ptr<SqliteDatabase> read_;  // otherwise, if the file can be read
};

// All rows of one select.
struct LedgerRecordset {
  std::vector<std::string> columns;
  std::vector<std::vector<LedgerValue>> rows;

  bool Empty() const { return rows.empty(); }
};

// Opens the file, and creates it with its tables if it is missing; ":memory:" keeps nothing on
// disk. Never throws: a file that is not a ledger, damaged, read-only or in use by another program
// is not changed, and WhyNot says why.
void LedgerOpen(LedgerConnection& connection, const std::string& data_source);

// Opens an existing file read-only, also in a read-only folder, and leaves no trace there. Throws
// LedgerError.
void LedgerOpenToRead(LedgerConnection& connection, const std::string& data_source);

// Closes the file, so that another program can own it.
void LedgerClose(LedgerConnection& connection);

// Runs a select, in which "&" joins texts. Dates are stored as ISO texts, so that they sort; the
// column ActDate is returned as the user writes dates; format(…, 'dd-mmm-yy HH:MM') of a joined
// date and time has English month names. Rows of equal date and time are returned in the order of
// insertion, reversed if the select is descending. MyPortfolio holds the rows of the scope; unless
// it is kCurrentRun, with two more columns: Run, and Place, the row's number in that run. The table
// Scope holds the numbers of the scope's runs. Fetches at most `most_rows` rows.
LedgerRecordset LedgerQuery(LedgerConnection& connection, std::string_view select_text,
                            LedgerScope scope = kCurrentRun, std::size_t most_rows = SIZE_MAX);

// Throws LedgerError if the ledger has no run or no session of that number; kCurrentRun always
// passes.
void LedgerRequire(LedgerConnection& connection, LedgerScope scope);

// Appends one row; values are in the order of the columns. The row is on the disk on return.
void LedgerInsert(LedgerConnection& connection, std::string_view table,
                  const std::vector<std::string>& columns, const std::vector<LedgerValue>& values);
// Appends an order's row and its detail, gives it the plan if there is one, keeps the trades that
// it has closed in its session, and writes where that is now, all or nothing. Returns the key of
// the order.
LedgerOrderKey LedgerInsertOrder(LedgerConnection& connection,
                                 const std::vector<LedgerValue>& values, const LedgerDetail& detail,
                                 const LedgerMoment& moment = {}, const LedgerPlan* plan = nullptr,
                                 const std::vector<LedgerTrade>* closed = nullptr);

// Starts a run in one transaction: the rows of MyPortfolio move to the archive of their run, and
// later rows belong to the new run. A session without a number begins with it; of another one the
// account is written again, since the trader may have changed it. Returns the session's number.
int LedgerBeginRun(LedgerConnection& connection, const LedgerRun& run,
                   const LedgerSession& session = {}, LedgerMoment moment = {});
// Records a wiped-out holding after the newest row, its trades, and where its session is now; the
// detail has the quantity ordered.
void LedgerNoteWiped(LedgerConnection& connection, const LedgerWiped& wiped,
                     const LedgerDetail& detail, const LedgerMoment& moment = {},
                     const std::vector<LedgerTrade>* closed = nullptr);

// The sessions; all throw LedgerError, the last three also for an unknown number.

// Writes where the session of that number is now; a moment without a number is not written.
void LedgerWriteMoment(LedgerConnection& connection, const LedgerMoment& moment);
// As part of the caller's transaction.
void LedgerWriteMoment(SqliteDatabase& database, const LedgerMoment& moment);
// A ledger of an earlier version that is only read has no tables for them.
bool LedgerHasSessions(LedgerConnection& connection);
// Newest first by when they were last played.
std::vector<LedgerPlayed> LedgerSessions(LedgerConnection& connection);
LedgerPlayed LedgerReadSession(LedgerConnection& connection, int number);
// The trader has ended the session: it can't be resumed.
void LedgerEndSession(LedgerConnection& connection, int number);
// Removes the session from the list, and the plan that waits for its next order. Its runs and rows
// stay.
void LedgerForgetSession(LedgerConnection& connection, int number);

}  // namespace velumar
