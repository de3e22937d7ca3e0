#include <algorithm>
#include <map>
#include <ostream>

#include "base/dates.h"
#include "base/number_text.h"
#include "cli/commands.h"
#include "cli/json_text.h"
#include "cli/text_table.h"
#include "platform/system.h"
#include "results/figure_texts.h"
#include "session/card_making.h"
#include "session/card_schedule.h"
#include "trading/card_list.h"

namespace velumar {

namespace {

nlohmann::ordered_json NumberOrNull(const std::optional<double>& number) {
  if (!number) return nullptr;
  return DecimalNumber(DecimalText(*number));
}

nlohmann::ordered_json AnswerObject(const LedgerCardAnswer& answer) {
  return {{"answered", answer.answered},
          {"decision", DecisionText(answer.decision)},
          {"stop", NumberOrNull(answer.stop)},
          {"confidence", answer.confidence},
          {"bars", answer.bars},
          {"points", NumberOrNull(answer.points)},
          {"r", NumberOrNull(answer.r)},
          {"verdict", VerdictText(answer.verdict)},
          {"due", answer.due}};
}

nlohmann::ordered_json CardObject(const CardLine& line,
                                  const std::vector<LedgerCardAnswer>& answers) {
  nlohmann::ordered_json object{{"card", line.card.id}, {"kind", KindText(line.card.kind)},
                                {"symbol", nullptr},    {"interval", nullptr},
                                {"date", nullptr},      {"time", nullptr}};
  if (!line.hidden) {
    object["symbol"] = line.symbol;
    object["interval"] = line.card.interval;
    object["date"] = line.date;
    object["time"] = line.time;
  }
  object["made"] = line.card.made;
  object["due"] = line.card.due;
  object["is_due"] = line.due;
  object["step_days"] =
      kCardDays[static_cast<std::size_t>(std::clamp(line.card.step, 0, int{kCardDays.size()} - 1))];
  object["answers"] = nlohmann::ordered_json::array();
  for (const LedgerCardAnswer& answer : answers) object["answers"].push_back(AnswerObject(answer));
  return object;
}

std::string CardJson(LedgerConnection& ledger, const std::vector<CardLine>& lines) {
  std::map<int, std::vector<LedgerCardAnswer>> answers;
  for (LedgerCardAnswer& answer : LedgerCardAnswers(ledger)) {
    answers[answer.card].push_back(std::move(answer));
  }
  auto list = nlohmann::ordered_json::array();
  for (const CardLine& line : lines) list.push_back(CardObject(line, answers[line.card.id]));
  return JsonText(list, kIndented);
}

std::string CardTable(const std::vector<CardLine>& lines, const std::string& date_pattern) {
  TextTable table({{"No.", TextTable::kRight},
                   {"Due"},
                   {"Made of"},
                   {"Security"},
                   {"Chart until"},
                   {"Answers", TextTable::kRight},
                   {"Verdict"},
                   {"R", TextTable::kRight}});
  for (const CardLine& line : lines) {
    const auto& last = line.last;
    table.AddRow(
        {std::to_string(line.card.id), line.due ? "now" : DateText(line.card.due, date_pattern),
         KindText(line.card.kind), line.hidden ? "hidden" : line.symbol + " " + line.card.interval,
         line.hidden
             ? ""
             : DateText(line.date, date_pattern) + " " + PatternText(line.time, kTimePattern),
         std::to_string(line.card.answers), last ? VerdictText(last->verdict) : "",
         last && last->r ? MoneyText(last->r) : ""});
  }
  return table.Text();
}

LedgerConnection OpenToWrite(const CardsArguments& arguments) {
  LedgerConnection ledger = OpenScope({arguments.file, kCurrentRun, arguments.date_pattern});
  LedgerOpen(ledger, arguments.file);
  if (!ledger.CanWrite()) throw LedgerError(ledger.WhyNot());
  return ledger;
}

void MakeCards(const CardsArguments& arguments, CliContext& context) {
  LedgerConnection ledger = OpenToWrite(arguments);
  const SystemClock clock;
  const CardMaker::Losses losses =
      CardMaker(ledger, context.cache, clock, true).MakeOfLosses(arguments.losses);
  context.out << losses.made << (losses.made == 1 ? " card" : " cards") << " made.";
  if (losses.refused > 0) context.out << " Of " << losses.refused << " there is no chart any more.";
  context.out << "\n";
}

void DeleteCard(const CardsArguments& arguments) {
  LedgerConnection ledger = OpenToWrite(arguments);
  if (LedgerDeleteCard(ledger, arguments.card)) return;
  throw LedgerError(arguments.file + " has no card " + std::to_string(arguments.card) + ".");
}

}  // namespace

void Cards(const CardsArguments& arguments, CliContext& context) {
  if (arguments.losses > 0) return MakeCards(arguments, context);
  if (arguments.card > 0) return DeleteCard(arguments);
  LedgerConnection ledger = OpenScope({arguments.file, kCurrentRun, arguments.date_pattern});
  std::vector<CardLine> lines = ListCards(ledger, SystemClock().Today());
  if (arguments.due) std::erase_if(lines, [](const CardLine& line) { return !line.due; });
  context.out << (arguments.json ? CardJson(ledger, lines)
                                 : CardTable(lines, DatePatternOrDefault(arguments.date_pattern)));
}

}  // namespace velumar
