#include "ledger/drills.h"

namespace velumar {

int LedgerAddToDrill(LedgerConnection& connection, const LedgerDrill& drill, int session) {
  SqliteDatabase& database = connection.ForWriting();
  SqliteTransaction transaction(database);
  int number = drill.number;
  if (number == 0) {
    database.Run(
        "INSERT INTO Drills (Began, Charts, Bars, SecondsEach, Directory, SymbolInterval) "
        "VALUES (?, ?, ?, ?, ?, ?)",
        {drill.began, double(drill.charts), double(drill.bars), double(drill.seconds),
         drill.directory, drill.interval});
    number = static_cast<int>(database.LastRow());
  }
  database.Run(
      "INSERT INTO DrillSessions (Drill, Place, Session) "
      "SELECT ?1, count(*) + 1, ?2 FROM DrillSessions WHERE Drill = ?1",
      {double(number), double(session)});
  transaction.Commit();
  return number;
}

void LedgerFinishDrill(LedgerConnection& connection, int number) {
  connection.ForWriting().Run("UPDATE Drills SET Finished = 1 WHERE Id = ?", {double(number)});
}

std::vector<LedgerDrill> LedgerDrills(LedgerConnection& connection) {
  const SqliteDatabase& database = connection.ForReading();
  std::vector<LedgerDrill> drills;
  if (!database.HasTable("Drills")) return drills;
  SqliteStatement select = database.Prepare(
      "SELECT Id, Began, Charts, Bars, SecondsEach, Directory, SymbolInterval, Finished, Session "
      "FROM Drills JOIN DrillSessions ON Drill = Id ORDER BY Id, Place");
  const auto text = [&select](int column) { return std::string(select.Text(column)); };
  while (select.Step()) {
    const int number = select.Whole(0);
    if (drills.empty() || drills.back().number != number) {
      drills.push_back({.number = number,
                        .began = text(1),
                        .charts = select.Whole(2),
                        .bars = select.Whole(3),
                        .seconds = select.Whole(4),
                        .directory = text(5),
                        .interval = text(6),
                        .finished = select.Whole(7) != 0});
    }
    drills.back().sessions.push_back(select.Whole(8));
  }
  return drills;
}

}  // namespace velumar
