#include "ledger/ledger.h"

#include <sqlite3.h>

#include <sstream>

#include "base/dates.h"
#include "base/text.h"
#include "ledger/ledger_tables.h"
#include "ledger/plans.h"
#include "ledger/trades.h"

namespace velumar {

namespace {

// "2007-01-25 16:30:00" as "25-Jan-07 16:30"; any other text unchanged.
std::string DayMonthYearTime(const std::string& text) {
  constexpr std::size_t kDateLength = 10;
  constexpr std::size_t kJoinedLength = 19;
  if (text.size() != kJoinedLength) return text;
  return IsoDateText(text.substr(0, kDateLength), "dd-MMM-yy") + text.substr(kDateLength, 6);
}

void FormatJoined(sqlite3_context* context, int, sqlite3_value** arguments) {
  const auto* bytes = reinterpret_cast<const char*>(sqlite3_value_text(arguments[0]));
  if (bytes == nullptr) {
    sqlite3_result_null(context);
    return;
  }
  const std::string shown = DayMonthYearTime(bytes);
  sqlite3_result_text(context, shown.c_str(), static_cast<int>(shown.size()), SQLITE_TRANSIENT);
}

// Adds format(text, pattern), which the selects of the results use for a joined date and time.
void AddLedgerFunctions(SqliteDatabase& database) {
  sqlite3_create_function(database.Handle(), "format", 2, SQLITE_UTF8 | SQLITE_DETERMINISTIC,
                          nullptr, FormatJoined, nullptr, nullptr);
}

// SQLite joins texts with "||", and rows of equal date and time keep the order of insertion. No
// literal in the selects contains "&".
std::string Translated(std::string_view select_text) {
  std::string sql;
  for (const char c : select_text) sql += c == '&' ? std::string("||") : std::string(1, c);
  const std::string upper = UpperCased(sql);
  const std::size_t order = upper.find("ORDER BY");
  if (order == std::string::npos) return sql;
  const bool descending = upper.find(" DESC", order) != std::string::npos;
  return sql + ", rowid" + (descending ? " desc" : "");
}

std::string Listed(const std::vector<std::string>& columns) {
  std::string list;
  for (const std::string& column : columns) list += (list.empty() ? "[" : ", [") + column + "]";
  return list;
}

std::string InsertInto(std::string_view table, const std::vector<std::string>& columns) {
  std::string places;
  for (std::size_t i = 0; i < columns.size(); ++i) places += i == 0 ? "?" : ", ?";
  return "INSERT INTO " + std::string(table) + " (" + Listed(columns) + ") VALUES (" + places + ")";
}

// The number of the current run; 0 if none was recorded.
constexpr const char* kNewestRun = "coalesce((SELECT max(Id) FROM Runs), 0)";

std::vector<std::string> RunColumns() {
  return {"Directory", "Symbol",        "SymbolInterval", "StartDate",     "StartTime",
          "Market",    "StartingMoney", "Margin",         "MoneyPerPoint", "Session"};
}

std::vector<LedgerValue> RunValues(const LedgerRun& run) {
  return {run.directory, run.symbol,         run.interval, run.start_date,     run.start_time,
          run.market,    run.starting_money, run.margin,   run.money_per_point};
}

// The numbers of the scope's runs, as a select.
std::string RunsOf(LedgerScope scope) {
  const std::string number = std::to_string(scope.number);
  if (scope.kind == LedgerScope::Kind::kSession) {
    return "SELECT Id FROM Runs WHERE Session = " + number;
  }
  return "SELECT " + (scope == kCurrentRun ? std::string(kNewestRun) : number);
}

// Makes a select read the rows of the scope in place of MyPortfolio: those of the archive, then
// those of the current run if it belongs to the scope.
std::string Over(LedgerScope scope, const std::string& sql) {
  const std::string numbers = "WITH Scope AS (" + RunsOf(scope) + ")";
  if (scope == kCurrentRun) return numbers + " " + sql;
  const auto rows = [](const std::string& run, const std::string& place, const std::string& table) {
    return "SELECT " + Listed(PortfolioColumns()) + ", " + run + " AS Run, " + place +
           " AS Place, " + run + " * 4294967296 + " + place + " AS rowid FROM " + table +
           " WHERE " + run + " IN Scope";
  };
  return numbers + ", MyPortfolio AS (" + rows("Run", "Place", "Archive") + " UNION ALL " +
         rows(kNewestRun, "rowid", "main.MyPortfolio") + ") " + sql;
}

// Writes a session's beginning or its account, and returns its number. The caller holds a
// transaction.
int WriteSession(SqliteDatabase& database, const LedgerSession& session) {
  const LedgerAccount& account = session.account;
  if (session.number != 0) {
    database.Run(
        "UPDATE Sessions SET StartingMoney = ?, Margin = ?, MoneyPerPoint = ?, Commission = ?, "
        "Vat = ? WHERE Id = ?",
        {account.money, account.margin, account.money_per_point, account.commission, account.vat,
         double(session.number)});
    return session.number;
  }
  const auto again = [&session](int number) {
    return session.again.run == 0 ? LedgerValue() : LedgerValue(double(number));
  };
  database.Run(
      "INSERT INTO Sessions (Directory, Symbol, SymbolInterval, StartDay, StartingMoney, Margin, "
      "MoneyPerPoint, Commission, Vat, Begun, Mask, AgainRun, AgainPlace) VALUES (?, ?, ?, ?, ?, "
      "?, "
      "?, ?, ?, ?, ?, ?, ?)",
      {session.directory, session.symbol, session.interval, double(session.start_day),
       account.money, account.margin, account.money_per_point, account.commission, account.vat,
       session.begun, session.mask.empty() ? LedgerValue() : LedgerValue(session.mask),
       again(session.again.run), again(session.again.place)});
  return static_cast<int>(database.LastRow());
}

// Keeps the trades that an order has closed. The caller holds a transaction.
void AddClosed(SqliteDatabase& database, const LedgerMoment& moment, const LedgerOrderKey& exit,
               const std::vector<LedgerTrade>* closed) {
  if (closed == nullptr || moment.session == 0) return;
  LedgerAddTrades(database, moment.session, exit, *closed);
}

// Moves the rows to the archive of their run. The caller holds a transaction.
void ArchiveRows(SqliteDatabase& database) {
  const std::string columns = Listed(PortfolioColumns());
  database.Execute("INSERT INTO Archive (Run, Place, " + columns + ") SELECT " + kNewestRun +
                   ", rowid, " + columns + " FROM MyPortfolio ORDER BY rowid");
  database.Execute("DELETE FROM MyPortfolio");
}

}  // namespace

const std::vector<std::string>& PortfolioColumns() {
  static const std::vector<std::string> kColumns = [] {
    std::vector<std::string> columns;
    std::istringstream declared{std::string(kRowColumns)};
    for (std::string name, type; declared >> name >> type;) columns.push_back(name);
    return columns;
  }();
  return kColumns;
}

SqliteDatabase& LedgerConnection::ForReading() {
  if (owned_) return owned_->ForReading();
  if (!read_) throw LedgerError(why_not_.empty() ? "the ledger is not open" : why_not_);
  if (read_->Outdated()) OpenReadOnly();
  return *read_;
}

SqliteDatabase& LedgerConnection::ForWriting() {
  if (!owned_) throw LedgerError(why_not_.empty() ? "the ledger is not open" : why_not_);
  return owned_->ForWriting();
}

void LedgerConnection::OpenReadOnly() {
  read_ = velumar::OpenReadOnly(file_, LedgerKind());
  AddLedgerFunctions(*read_);
}

void LedgerOpen(LedgerConnection& connection, const std::string& data_source) {
  LedgerClose(connection);
  connection.file_ = data_source;
  try {
    connection.owned_ = std::make_unique<OwnedDatabase>(data_source, LedgerKind());
    AddLedgerFunctions(connection.owned_->ForReading());
    connection.why_not_.clear();
    return;
  } catch (const LedgerError& error) {
    connection.why_not_ = error.what();
  }
  try {
    connection.OpenReadOnly();
  } catch (const LedgerError&) {
    // WhyNot already says why.
  }
}

void LedgerClose(LedgerConnection& connection) {
  connection.owned_.reset();
  connection.read_.reset();
  connection.why_not_ = connection.file_ + ": the ledger is closed";
}

void LedgerOpenToRead(LedgerConnection& connection, const std::string& data_source) {
  LedgerClose(connection);
  connection.file_ = data_source;
  connection.why_not_ = data_source + ": opened read-only";
  connection.OpenReadOnly();
}

LedgerRecordset LedgerQuery(LedgerConnection& connection, std::string_view select_text,
                            LedgerScope scope, std::size_t most_rows) {
  SqliteStatement select = connection.ForReading().Prepare(Over(scope, Translated(select_text)));
  LedgerRecordset records;
  std::vector<bool> dates;
  for (int i = 0; i < select.Columns(); ++i) {
    records.columns.push_back(select.ColumnName(i));
    dates.push_back(UpperCased(records.columns.back()) == "ACTDATE");
  }
  while (records.rows.size() < most_rows && select.Step()) {
    std::vector<LedgerValue>& row = records.rows.emplace_back();
    for (int i = 0; i < select.Columns(); ++i) {
      LedgerValue value = select.Value(i);
      const auto* text = std::get_if<std::string>(&value);
      if (dates[static_cast<std::size_t>(i)] && text != nullptr) value = connection.DateText(*text);
      row.push_back(std::move(value));
    }
  }
  return records;
}

void LedgerRequire(LedgerConnection& connection, LedgerScope scope) {
  if (scope == kCurrentRun) return;
  const bool session = scope.kind == LedgerScope::Kind::kSession;
  const auto has = [&](std::string_view select) {
    return connection.ForReading().FirstValue(select, {double(scope.number)}) != LedgerValue();
  };
  if (session ? LedgerHasSessions(connection) && has("SELECT 1 FROM Sessions WHERE Id = ?")
              : has("SELECT 1 FROM Runs WHERE Id = ?")) {
    return;
  }
  throw LedgerError(connection.File() + ": no " + (session ? "session" : "run") +
                    " has the number " + std::to_string(scope.number));
}

void LedgerInsert(LedgerConnection& connection, std::string_view table,
                  const std::vector<std::string>& columns, const std::vector<LedgerValue>& values) {
  connection.ForWriting().Run(InsertInto(table, columns), values);
}

LedgerOrderKey LedgerInsertOrder(LedgerConnection& connection,
                                 const std::vector<LedgerValue>& values, const LedgerDetail& detail,
                                 const LedgerMoment& moment, const LedgerPlan* plan,
                                 const std::vector<LedgerTrade>* closed) {
  static const std::string kRow = InsertInto(kPortfolioTable, PortfolioColumns());
  static const std::string kRun = "SELECT " + std::string(kNewestRun);
  SqliteDatabase& database = connection.ForWriting();
  SqliteTransaction transaction(database);
  const LedgerValue run = database.Run(kRun);
  database.Run(kRow, values);
  const LedgerValue place = double(database.LastRow());
  database.Run(
      "INSERT INTO Details (Run, Place, Quantity, Vat, BarIndex, NewestShown, ClosePrice) VALUES "
      "(?, ?, ?, ?, ?, ?, ?)",
      {run, place, detail.quantity, detail.vat, double(detail.bar_index),
       double(detail.newest_shown), detail.close ? LedgerValue(*detail.close) : LedgerValue()});
  const LedgerOrderKey key{WholeOf(run), WholeOf(place)};
  if (plan != nullptr) {
    LedgerPlan taken = *plan;
    taken.order = key;
    LedgerWritePlan(connection, taken);
  }
  AddClosed(database, moment, key, closed);
  LedgerWriteMoment(database, moment);
  transaction.Commit();
  return key;
}

int LedgerBeginRun(LedgerConnection& connection, const LedgerRun& run, const LedgerSession& session,
                   LedgerMoment moment) {
  SqliteDatabase& database = connection.ForWriting();
  SqliteTransaction transaction(database);
  ArchiveRows(database);
  moment.session = WriteSession(database, session);
  std::vector<LedgerValue> values = RunValues(run);
  values.emplace_back(double(moment.session));
  database.Run(InsertInto("Runs", RunColumns()), values);
  LedgerWriteMoment(database, moment);
  transaction.Commit();
  return moment.session;
}

void LedgerNoteWiped(LedgerConnection& connection, const LedgerWiped& wiped,
                     const LedgerDetail& detail, const LedgerMoment& moment,
                     const std::vector<LedgerTrade>* closed) {
  SqliteDatabase& database = connection.ForWriting();
  SqliteTransaction transaction(database);
  database.Run(
      "INSERT INTO Wiped (Run, Place, Position, Held, AvgPrice, Quantity, BarIndex, NewestShown, "
      "BarDate, BarTime, MarketPrice) VALUES (" +
          std::string(kNewestRun) +
          ", (SELECT coalesce(max(rowid), 0) FROM MyPortfolio), ?, ?, ?, ?, ?, ?, ?, ?, ?)",
      {wiped.position, wiped.held, wiped.average, detail.quantity, double(detail.bar_index),
       double(detail.newest_shown), wiped.date, wiped.time, wiped.price});
  const int run = WholeOf(database.Run("SELECT " + std::string(kNewestRun)));
  AddClosed(database, moment, {run, 0}, closed);
  LedgerWriteMoment(database, moment);
  transaction.Commit();
}

}  // namespace velumar
