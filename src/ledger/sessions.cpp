#include "ledger/sessions.h"

#include <initializer_list>
#include <span>

#include "ledger/ledger.h"

namespace velumar {

namespace {

// A ledger of an earlier version that is only read can't say which trade is played again.
std::string Select(const SqliteDatabase& database) {
  const bool again = database.HasColumn("Sessions", "AgainRun");
  return "SELECT Id, Directory, Symbol, SymbolInterval, StartDay, StartingMoney, Margin, "
         "MoneyPerPoint, Commission, Vat, Begun, Ended, Mask, " +
         std::string(again ? "AgainRun, AgainPlace, " : "NULL, NULL, ") +
         "BarIndex, NewestShown, FirstShown, BarDate, BarTime, BarsCheck, Book, AsShown, Touched "
         "FROM Sessions JOIN SessionMoments ON Session = Id";
}

// Reads the columns of a row in their order.
class RowReader {
 public:
  explicit RowReader(const SqliteStatement& row) : row_(row) {}

  std::string Text() { return ValueAs<std::string>(row_.Value(column_++)); }
  int Whole() { return WholeOf(row_.Value(column_++)); }

 private:
  const SqliteStatement& row_;
  int column_ = 0;
};

LedgerPlayed ReadRow(const SqliteStatement& select) {
  RowReader row(select);
  LedgerPlayed played;
  LedgerSession& session = played.session;
  session.number = row.Whole();
  for (std::string* text : {&session.directory, &session.symbol, &session.interval}) {
    *text = row.Text();
  }
  session.start_day = row.Whole();
  LedgerAccount& account = session.account;
  for (std::string* text : {&account.money, &account.margin, &account.money_per_point,
                            &account.commission, &account.vat, &session.begun}) {
    *text = row.Text();
  }
  session.ended = row.Whole() != 0;
  session.mask = row.Text();
  session.again.run = row.Whole();
  session.again.place = row.Whole();
  LedgerMoment& moment = played.moment;
  moment.session = session.number;
  for (int* number :
       {&moment.bar, &moment.newest_shown, &moment.first_shown, &moment.date, &moment.time}) {
    *number = row.Whole();
  }
  moment.bars_check = row.Text();
  moment.book = row.Text();
  moment.as_shown = row.Whole() != 0;
  moment.touched = row.Text();
  return played;
}

[[noreturn]] void RefuseNumber(const LedgerConnection& connection, int number) {
  throw LedgerError(connection.File() + ": no session has the number " + std::to_string(number));
}

void ChangeSession(LedgerConnection& connection, int number,
                   std::initializer_list<std::string_view> statements) {
  LedgerReadSession(connection, number);
  SqliteDatabase& database = connection.ForWriting();
  SqliteTransaction transaction(database);
  for (const std::string_view sql : statements) database.Run(sql, {double(number)});
  transaction.Commit();
}

}  // namespace

void LedgerWriteMoment(LedgerConnection& connection, const LedgerMoment& moment) {
  if (moment.session != 0) LedgerWriteMoment(connection.ForWriting(), moment);
}

void LedgerWriteMoment(SqliteDatabase& database, const LedgerMoment& moment) {
  if (moment.session == 0) return;
  database.Run(
      "REPLACE INTO SessionMoments (Session, BarIndex, NewestShown, FirstShown, BarDate, BarTime, "
      "BarsCheck, Book, AsShown, Touched) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
      {double(moment.session), double(moment.bar), double(moment.newest_shown),
       double(moment.first_shown), double(moment.date), double(moment.time), moment.bars_check,
       moment.book, double(moment.as_shown), moment.touched});
}

bool LedgerHasSessions(LedgerConnection& connection) {
  return connection.ForReading().HasTable("SessionMoments");
}

std::vector<LedgerPlayed> LedgerSessions(LedgerConnection& connection) {
  std::vector<LedgerPlayed> sessions;
  if (!LedgerHasSessions(connection)) return sessions;
  const SqliteDatabase& database = connection.ForReading();
  SqliteStatement select = database.Prepare(Select(database) + " ORDER BY Touched DESC, Id DESC");
  while (select.Step()) sessions.push_back(ReadRow(select));
  return sessions;
}

LedgerPlayed LedgerReadSession(LedgerConnection& connection, int number) {
  if (!LedgerHasSessions(connection)) RefuseNumber(connection, number);
  const SqliteDatabase& database = connection.ForReading();
  SqliteStatement select = database.Prepare(Select(database) + " WHERE Id = ?");
  const LedgerValue id(static_cast<double>(number));
  select.Bind(std::span(&id, 1));
  if (!select.Step()) RefuseNumber(connection, number);
  return ReadRow(select);
}

void LedgerEndSession(LedgerConnection& connection, int number) {
  ChangeSession(connection, number, {"UPDATE Sessions SET Ended = 1 WHERE Id = ?"});
}

void LedgerForgetSession(LedgerConnection& connection, int number) {
  ChangeSession(
      connection, number,
      {"DELETE FROM SessionMoments WHERE Session = ?", "DELETE FROM Sessions WHERE Id = ?",
       "DELETE FROM Plans WHERE Session = ? AND Run IS NULL",
       "DELETE FROM Trades WHERE Session = ?", "DELETE FROM PlayedBars WHERE Session = ?"});
}

}  // namespace velumar
