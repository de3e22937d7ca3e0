#include "ledger/cards.h"

#include <algorithm>
#include <span>

namespace velumar {

namespace {

// A damaged number counts as the last one of the list.
template <typename Choice>
Choice ChoiceOf(int number, Choice last) {
  const int highest = static_cast<int>(last);
  return static_cast<Choice>(number < 0 || number > highest ? highest : number);
}

LedgerValue Number(auto choice) { return static_cast<double>(choice); }

bool Exists(const SqliteDatabase& database, const char* select, const LedgerValue& key) {
  return database.FirstValue(select, {key}) != LedgerValue();
}

LedgerCard ReadCard(const SqliteStatement& row) {
  const auto whole = [&row](int column) { return row.Whole(column); };
  const auto text = [&row](int column) { return std::string(row.Text(column)); };
  return {.id = whole(0),
          .kind = ChoiceOf(whole(1), LedgerCard::Kind::kLoss),
          .session = whole(2),
          .order = {whole(3), whole(4)},
          .directory = text(5),
          .symbol = text(6),
          .interval = text(7),
          .mask = text(8),
          .position = text(9),
          .bar = whole(10),
          .date = whole(11),
          .time = whole(12),
          .bars_check = text(13),
          .made = text(14),
          .first_due = whole(15),
          .answers = whole(16),
          .step = whole(17),
          .due = whole(18)};
}

LedgerCardAnswer ReadAnswer(const SqliteStatement& row) {
  return {.card = row.Whole(0),
          .answered = std::string(row.Text(1)),
          .decision = ChoiceOf(row.Whole(2), LedgerCardAnswer::Decision::kNothing),
          .stop = row.Number(3),
          .confidence = row.Whole(4),
          .bars = row.Whole(5),
          .points = row.Number(6),
          .r = row.Number(7),
          .verdict = ChoiceOf(row.Whole(8), LedgerCardAnswer::Verdict::kPoor),
          .step = row.Whole(9),
          .due = row.Whole(10)};
}

}  // namespace

std::optional<int> LedgerAddCard(LedgerConnection& connection, const LedgerCard& card) {
  SqliteDatabase& database = connection.ForWriting();
  SqliteTransaction transaction(database);
  if (Exists(database, "SELECT 1 FROM Cards WHERE Position = ?", card.position)) return {};
  database.Run(
      "INSERT INTO Cards (Kind, Session, Run, Place, Directory, Symbol, SymbolInterval, Mask, "
      "Position, BarIndex, BarDate, BarTime, BarsCheck, Made, FirstDue) "
      "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
      {Number(card.kind), Number(card.session), Number(card.order.run), Number(card.order.place),
       card.directory, card.symbol, card.interval, card.mask, card.position, Number(card.bar),
       Number(card.date), Number(card.time), card.bars_check, card.made, Number(card.first_due)});
  const auto number = static_cast<int>(database.LastRow());
  transaction.Commit();
  return number;
}

// An answer's values are those of the row with the highest number.
std::vector<LedgerCard> LedgerCards(LedgerConnection& connection) {
  const SqliteDatabase& database = connection.ForReading();
  std::vector<LedgerCard> cards;
  if (!database.HasTable("Cards")) return cards;
  SqliteStatement select = database.Prepare(
      "SELECT Cards.Id, Kind, Cards.Session, Run, Place, Cards.Directory, "
      "coalesce(Sessions.Symbol, Cards.Symbol), Cards.SymbolInterval, Cards.Mask, Position, "
      "BarIndex, "
      "BarDate, BarTime, BarsCheck, Made, FirstDue, coalesce(Answers, 0), coalesce(Step, 0), "
      "coalesce(Due, FirstDue) "
      "FROM Cards LEFT JOIN Sessions ON Sessions.Id = Cards.Session LEFT JOIN "
      "(SELECT Card, count(*) AS Answers, max(Id), Step, Due FROM CardAnswers GROUP BY Card) "
      "ON Card = Cards.Id ORDER BY Cards.Id");
  while (select.Step()) cards.push_back(ReadCard(select));
  return cards;
}

std::vector<LedgerCardAnswer> LedgerCardAnswers(LedgerConnection& connection,
                                                std::optional<int> card) {
  const SqliteDatabase& database = connection.ForReading();
  std::vector<LedgerCardAnswer> answers;
  if (!database.HasTable("CardAnswers")) return answers;
  SqliteStatement select = database.Prepare(
      "SELECT Card, Answered, Decision, Stop, Confidence, Bars, Points, R, Verdict, Step, Due "
      "FROM CardAnswers WHERE Card = coalesce(?, Card) ORDER BY Id");
  const LedgerValue key = OrNull(card);
  select.Bind(std::span(&key, 1));
  while (select.Step()) answers.push_back(ReadAnswer(select));
  return answers;
}

void LedgerAnswerCard(LedgerConnection& connection, const LedgerCardAnswer& answer) {
  connection.ForWriting().Run(
      "INSERT INTO CardAnswers (Card, Answered, Decision, Stop, Confidence, Bars, Points, R, "
      "Verdict, Step, Due) SELECT Id, ?, ?, ?, ?, ?, ?, ?, ?, ?, ? FROM Cards WHERE Id = ?",
      {answer.answered, Number(answer.decision), OrNull(answer.stop), Number(answer.confidence),
       Number(answer.bars), OrNull(answer.points), OrNull(answer.r), Number(answer.verdict),
       Number(answer.step), Number(answer.due), Number(answer.card)});
}

bool LedgerDeleteCard(LedgerConnection& connection, int id) {
  SqliteDatabase& database = connection.ForWriting();
  SqliteTransaction transaction(database);
  if (!Exists(database, "SELECT 1 FROM Cards WHERE Id = ?", Number(id))) return false;
  for (const char* const sql :
       {"DELETE FROM CardAnswers WHERE Card = ?", "DELETE FROM Cards WHERE Id = ?"}) {
    database.Run(sql, {Number(id)});
  }
  transaction.Commit();
  return true;
}

}  // namespace velumar
