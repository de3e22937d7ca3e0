#include "scoreserver/score_store.h"

#include <array>
#include <cstdint>
#include <string>

namespace velumar {

namespace {

constexpr std::array<TableSchema, 1> kTables{
    {{"scores",
      "id INTEGER PRIMARY KEY, posted TEXT DEFAULT CURRENT_TIMESTAMP, name TEXT, money REAL, "
      "symbol TEXT, start_date INTEGER, end_date INTEGER"}}};

void CreateScoreTables(SqliteDatabase& database) {
  CreateTables(database, kTables);
  database.Execute("CREATE INDEX IF NOT EXISTS by_money ON scores (money DESC, id)");
}

const DatabaseKind& ScoresKind() {
  static constexpr std::array kMigrations{CreateScoreTables};
  static const DatabaseKind kKind{"score file", kTables, kMigrations};
  return kKind;
}

}  // namespace

ScoreStore::ScoreStore(const std::string& file) : database_(file, ScoresKind()) {}

bool ScoreStore::Add(const Score& score) {
  SqliteDatabase& database = database_.ForWriting();
  SqliteTransaction transaction(database);
  database.Run(
      "INSERT INTO scores (name, money, symbol, start_date, end_date) VALUES (?, ?, ?, ?, ?)",
      {score.name, score.money, score.symbol, double(score.start_date), double(score.end_date)});
  const auto id = double(database.LastRow());
  database.Execute(
      "DELETE FROM scores WHERE id IN (SELECT id FROM scores ORDER BY money DESC, id "
      "LIMIT -1 OFFSET " +
      std::to_string(kMaxScores) + ")");
  if (database.FirstValue("SELECT 1 FROM scores WHERE id = ?", {id}) == LedgerValue()) return false;
  transaction.Commit();
  return true;
}

std::vector<Score> ScoreStore::Top(int count) {
  SqliteStatement select = database_.ForReading().Prepare(
      "SELECT name, money, symbol, start_date, end_date FROM scores ORDER BY money DESC, id "
      "LIMIT " +
      std::to_string(count));
  std::vector<Score> scores;
  while (select.Step()) {
    scores.push_back({.name = ValueAs<std::string>(select.Value(0)),
                      .money = ValueAs<double>(select.Value(1)),
                      .symbol = ValueAs<std::string>(select.Value(2)),
                      .start_date = static_cast<std::int32_t>(ValueAs<double>(select.Value(3))),
                      .end_date = static_cast<std::int32_t>(ValueAs<double>(select.Value(4)))});
  }
  return scores;
}

}  // namespace velumar
