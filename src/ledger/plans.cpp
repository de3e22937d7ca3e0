#include "ledger/plans.h"

#include <span>

namespace velumar {

namespace {

LedgerPlan ReadPlan(const SqliteStatement& row) {
  const auto whole = [&row](int column) { return row.Whole(column); };
  const auto text = [&row](int column) { return std::string(row.Text(column)); };
  return {.id = whole(0),
          .session = whole(1),
          .order = {whole(2), whole(3)},
          .stop = row.Number(4),
          .target = row.Number(5),
          .setup = text(6),
          .confidence = whole(7),
          .reasons = text(8),
          .risk = row.Number(9),
          .stop_since = whole(10),
          .target_since = whole(11),
          .written = text(12)};
}

std::vector<LedgerPlan> Plans(LedgerConnection& connection, const std::string& column, int number) {
  const SqliteDatabase& database = connection.ForReading();
  std::vector<LedgerPlan> plans;
  if (!database.HasTable("Plans")) return plans;
  SqliteStatement select = database.Prepare(
      "SELECT Id, Session, Run, Place, Stop, Target, Setup, Confidence, Reasons, Risk, StopSince, "
      "TargetSince, "
      "Written FROM Plans WHERE " +
      column + " = ? ORDER BY Id");
  const LedgerValue key(static_cast<double>(number));
  select.Bind(std::span(&key, 1));
  while (select.Step()) plans.push_back(ReadPlan(select));
  return plans;
}

}  // namespace

int LedgerWritePlan(LedgerConnection& connection, const LedgerPlan& plan) {
  SqliteDatabase& database = connection.ForWriting();
  const auto key = [&plan](int number) {
    return plan.Waits() ? LedgerValue() : LedgerValue(double(number));
  };
  database.Run(
      "REPLACE INTO Plans (Id, Session, Run, Place, Stop, Target, Setup, Confidence, Reasons, "
      "Risk, StopSince, TargetSince, Written) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
      {plan.id == 0 ? LedgerValue() : LedgerValue(double(plan.id)), double(plan.session),
       key(plan.order.run), key(plan.order.place), OrNull(plan.stop), OrNull(plan.target),
       plan.setup, double(plan.confidence), plan.reasons, OrNull(plan.risk),
       double(plan.stop_since), double(plan.target_since), plan.written});
  return static_cast<int>(database.LastRow());
}

void LedgerErasePlan(LedgerConnection& connection, int id) {
  connection.ForWriting().Run("DELETE FROM Plans WHERE Id = ?", {double(id)});
}

std::vector<LedgerPlan> LedgerPlansOfSession(LedgerConnection& connection, int session) {
  return Plans(connection, "Session", session);
}

std::vector<LedgerPlan> LedgerPlansOfRun(LedgerConnection& connection, int run) {
  return Plans(connection, "Run", run);
}

std::vector<std::string> LedgerSetups(LedgerConnection& connection) {
  const SqliteDatabase& database = connection.ForReading();
  std::vector<std::string> setups;
  if (!database.HasTable("Plans")) return setups;
  SqliteStatement select = database.Prepare(
      "SELECT Setup FROM Plans WHERE Setup <> '' GROUP BY Setup ORDER BY max(Written) DESC, "
      "max(Id) DESC LIMIT 100");
  while (select.Step()) setups.push_back(ValueAs<std::string>(select.Value(0)));
  return setups;
}

}  // namespace velumar
