#include "progress/coach_cards.h"

#include <array>
#include <map>

#include "base/number_text.h"
#include "ledger/cards.h"
#include "results/figure_texts.h"

namespace velumar {

namespace {

constexpr std::array kKinds{std::pair(LedgerCard::Kind::kMarked, "Marked bars"),
                            std::pair(LedgerCard::Kind::kTrade, "Trades"),
                            std::pair(LedgerCard::Kind::kLoss, "Losses")};

// Cards of one kind.
struct CardSums {
  std::size_t cards = 0;
  std::size_t answers = 0;
  std::array<std::size_t, 3> verdicts{};  // in the order of the values
  double r = 0;
  std::size_t with_r = 0;

  void Add(const LedgerCardAnswer& answer) {
    ++answers;
    ++verdicts.at(static_cast<std::size_t>(answer.verdict));
    if (!answer.r) return;
    r += *answer.r;
    ++with_r;
  }
  std::vector<std::string> Cells(const std::string& name) const {
    const auto counted = [](std::size_t count) { return GroupedNumber(std::to_string(count)); };
    std::vector<std::string> cells{name, counted(cards), counted(answers)};
    for (const std::size_t count : verdicts) cells.push_back(counted(count));
    cells.push_back(
        MoneyText(with_r == 0 ? std::nullopt : std::optional(r / static_cast<double>(with_r))));
    return cells;
  }
};

}  // namespace

std::optional<CoachTable> CardsTable(LedgerConnection& connection) {
  std::map<LedgerCard::Kind, CardSums> sums;
  std::map<int, LedgerCard::Kind> kinds;
  for (const LedgerCard& card : LedgerCards(connection)) {
    ++sums[card.kind].cards;
    kinds.emplace(card.id, card.kind);
  }
  if (kinds.empty()) return std::nullopt;
  for (const LedgerCardAnswer& answer : LedgerCardAnswers(connection)) {
    if (const auto kind = kinds.find(answer.card); kind != kinds.end()) {
      sums[kind->second].Add(answer);
    }
  }
  CoachTable table{.title = "Cards",
                   .note =
                       "Moments of a chart that come back until they are decided well. The "
                       "trader decides before the next bar and judges the decision after some "
                       "more; R is what it had brought by then.",
                   .columns = {{"Made of"},
                               {"Cards", true},
                               {"Answers", true},
                               {"Good", true},
                               {"Fair", true},
                               {"Poor", true},
                               {"Average R", true}},
                   .rows = {}};
  for (const auto& [kind, name] : kKinds) {
    if (const auto found = sums.find(kind); found != sums.end()) {
      table.rows.push_back(found->second.Cells(name));
    }
  }
  return table;
}

}  // namespace velumar
