#include "ledger/moved_orders.h"

#include "ledger/trades.h"

namespace velumar {

namespace {

// Two holdings can be wiped out at one bar, so theirs is set, not moved.
void MoveWiped(SqliteDatabase& database, const LedgerMovedOrder& order) {
  database.Run(
      "UPDATE Wiped SET NewestShown = NewestShown + ?1 - BarIndex, BarIndex = ?1 WHERE Run = ?2 "
      "AND BarDate = ?3 AND BarTime = ?4",
      {double(order.bar), double(order.order.run), order.date, order.time});
}

}  // namespace

void LedgerMoveOrders(LedgerConnection& connection, const std::vector<LedgerMovedOrder>& orders) {
  SqliteDatabase& database = connection.ForWriting();
  SqliteTransaction transaction(database);
  for (const LedgerMovedOrder& order : orders) {
    if (order.order.place == 0) {
      MoveWiped(database, order);
      continue;
    }
    for (const char* update :
         {"UPDATE Details SET NewestShown = NewestShown + ?1, BarIndex = BarIndex + ?1 WHERE Run = "
          "?2 AND Place = ?3",
          "UPDATE Plans SET StopSince = StopSince + ?1, TargetSince = TargetSince + ?1 WHERE Run = "
          "?2 AND Place = ?3"}) {
      database.Run(update,
                   {double(order.moved), double(order.order.run), double(order.order.place)});
    }
  }
  if (!orders.empty()) {
    LedgerDropTrades(database, WholeOf(database.FirstValue("SELECT Session FROM Runs WHERE Id = ?",
                                                           {double(orders.front().order.run)})));
  }
  transaction.Commit();
}

}  // namespace velumar
