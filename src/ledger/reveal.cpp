#include "ledger/reveal.h"

#include <algorithm>
#include <utility>

#include "base/dates.h"
#include "base/number_text.h"
#include "ledger/trades.h"

namespace velumar {

namespace {

using Row = std::vector<LedgerValue>;

const std::string kOwnRuns = "(SELECT Id FROM Runs WHERE Session = ?)";

// Prices and points of a row.
const std::vector<std::string>& ScaledColumns() {
  static const std::vector<std::string> kColumns{"LAvgPrice",   "LUnrealised", "LRealised",
                                                 "SAvgPrice",   "SUnrealised", "SRealised",
                                                 "BalancePoint"};
  return kColumns;
}

// Replaces the values of the hidden columns in a session's rows.
class Revealing {
 public:
  Revealing(SqliteDatabase& database, int number, const LedgerHidden& hidden)
      : database_(database), number_(number), hidden_(hidden) {}

  void Run() {
    RevealRows("MyPortfolio",
               "JOIN Details AS D ON D.Place = T.rowid WHERE D.Run = (SELECT max(Id) FROM Runs) "
               "AND D.Run IN " +
                   kOwnRuns);
    RevealRows(
        "Archive",
        "JOIN Details AS D ON D.Run = T.Run AND D.Place = T.Place WHERE T.Run IN " + kOwnRuns);
    RevealDetails();
    RevealWiped();
    RevealRuns();
    RevealPlans();
    LedgerDropTrades(database_, number_);
    database_.Run("UPDATE SessionMoments SET BarDate = ? WHERE Session = ?",
                  {double(Day(database_.FirstValue("SELECT BarDate FROM SessionMoments WHERE "
                                                   "Session = ?",
                                                   {double(number_)}))),
                   double(number_)});
    database_.Run("UPDATE Sessions SET Symbol = ?, StartDay = ?, Ended = 1 WHERE Id = ?",
                  {hidden_.symbol, double(hidden_.start_day), double(number_)});
  }

 private:
  // All before anything is changed.
  std::vector<Row> Select(const std::string& sql) const {
    SqliteStatement select = database_.Prepare(sql);
    const LedgerValue id(static_cast<double>(number_));
    select.Bind(std::span(&id, 1));
    std::vector<Row> rows;
    while (select.Step()) {
      Row row;
      for (int i = 0; i < select.Columns(); ++i) row.push_back(select.Value(i));
      rows.push_back(std::move(row));
    }
    return rows;
  }

  std::int32_t Day(const LedgerValue& shown) const {
    const auto day = static_cast<std::int32_t>(ValueAs<double>(shown));
    return day == 0 ? 0 : hidden_.day(day);
  }
  // Of a date as a row has it; other texts stay.
  LedgerValue IsoDay(const LedgerValue& shown) const {
    std::string digits = ValueAs<std::string>(shown);
    std::erase(digits, '-');
    const auto day = DateFromDigits(digits);
    return day ? LedgerValue(IsoDate(hidden_.day(*day))) : shown;
  }
  // With all decimals, also in rows, which otherwise have two: a cent of a cheap security may be
  // much money.
  double Close(const LedgerValue& bar, const LedgerValue& shown) const {
    return hidden_.close(WholeOf(bar), ValueAs<double>(shown));
  }
  LedgerValue Scaled(const LedgerValue& shown) const {
    const auto real = static_cast<float>(ValueAs<double>(shown) / hidden_.factor);
    return ToDouble(PlainNumberText(real)).value_or(0);
  }

  // The account counts an entry at its shown price to two decimals, and an exit at all of them.
  LedgerValue Counted(bool entry, const LedgerValue& price, const LedgerValue& close) const {
    const LedgerValue& shown = entry || close == LedgerValue() ? price : close;
    return ValueAs<double>(shown) / hidden_.factor;
  }

  void RevealRows(const std::string& table, const std::string& joined) {
    constexpr std::size_t kOwn = 7;  // columns before the scaled ones
    std::string columns;
    std::string places;
    for (const std::string& column : ScaledColumns()) {
      columns += ", T." + column;
      places += ", " + column + " = ?";
    }
    for (const Row& row :
         Select("SELECT T.rowid, D.BarIndex, D.ClosePrice, T.ActDate, D.rowid, T.MarketPrice, "
                "T.Loffset + T.Soffset" +
                columns + " FROM " + table + " AS T " + joined)) {
      database_.Run("UPDATE Details SET Counted = ? WHERE rowid = ?",
                    {Counted(row[6] == LedgerValue(0.0), row[5], row[2]), row[4]});
      Row values{hidden_.symbol, IsoDay(row[3]), Close(row[1], row[2])};
      std::transform(row.begin() + kOwn, row.end(), std::back_inserter(values),
                     [this](const LedgerValue& shown) { return Scaled(shown); });
      values.push_back(row[0]);
      database_.Run("UPDATE " + table + " SET Symbol = ?, ActDate = ?, MarketPrice = ?" + places +
                        " WHERE rowid = ?",
                    values);
    }
  }

  void RevealDetails() {
    for (const Row& row :
         Select("SELECT rowid, BarIndex, ClosePrice FROM Details WHERE Run IN " + kOwnRuns)) {
      database_.Run("UPDATE Details SET ClosePrice = ? WHERE rowid = ?",
                    {Close(row[1], row[2]), row[0]});
    }
  }

  void RevealWiped() {
    for (const Row& row : Select("SELECT rowid, BarIndex, MarketPrice, BarDate, AvgPrice FROM "
                                 "Wiped WHERE Run IN " +
                                 kOwnRuns)) {
      database_.Run("UPDATE Wiped SET MarketPrice = ?, BarDate = ?, AvgPrice = ? WHERE rowid = ?",
                    {Close(row[1], row[2]), IsoDay(row[3]), Scaled(row[4]), row[0]});
    }
  }

  void RevealPlans() {
    const auto real = [this](const LedgerValue& shown) {
      return shown == LedgerValue() ? shown : LedgerValue(Scaled(shown));
    };
    for (const Row& row : Select("SELECT Id, Stop, Target FROM Plans WHERE Session = ?")) {
      database_.Run("UPDATE Plans SET Stop = ?, Target = ? WHERE Id = ?",
                    {real(row[1]), real(row[2]), row[0]});
    }
  }

  void RevealRuns() {
    for (const Row& row :
         Select("SELECT Id, StartDate, MoneyPerPoint FROM Runs WHERE Session = ?")) {
      const auto start = DateFromDigits(ValueAs<std::string>(row[1]));
      database_.Run(
          "UPDATE Runs SET Symbol = ?, StartDate = ?, MoneyPerPoint = ? WHERE Id = ?",
          {hidden_.symbol, start ? LedgerValue(std::to_string(hidden_.day(*start))) : row[1],
           ValueAs<double>(row[2]) * hidden_.factor, row[0]});
    }
  }

  SqliteDatabase& database_;
  int number_;
  const LedgerHidden& hidden_;
};

}  // namespace

void LedgerReveal(LedgerConnection& connection, int number, const LedgerHidden& hidden) {
  LedgerReadSession(connection, number);
  SqliteDatabase& database = connection.ForWriting();
  SqliteTransaction transaction(database);
  Revealing(database, number, hidden).Run();
  transaction.Commit();
}

}  // namespace velumar
