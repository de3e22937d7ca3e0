#include "trading/card_list.h"

#include <algorithm>
#include <array>
#include <map>

#include "base/ignoring.h"
#include "session/blind_mask.h"
#include "session/card_schedule.h"

namespace velumar {

namespace {

CardLine LineOf(const LedgerCard& card, std::int32_t today) {
  CardLine line{.card = card, .due = card.due <= today, .symbol = {}, .last = {}};
  const auto key = Decoded(card.mask);
  line.hidden = line.due || card.answers == 0 || card.symbol == kBlindSymbol || !key;
  if (line.hidden) return line;
  line.symbol = card.symbol;
  line.date = key->mask.RealDate(card.date);
  line.time = card.time;
  return line;
}

}  // namespace

std::vector<CardLine> ListCards(LedgerConnection& ledger, std::int32_t today) {
  const std::vector<LedgerCard> cards = LedgerCards(ledger);
  std::vector<std::size_t> order = DueCards(cards, today);
  const auto due = static_cast<std::ptrdiff_t>(order.size());
  for (std::size_t i = 0; i < cards.size(); ++i) {
    if (cards[i].due > today) order.push_back(i);
  }
  std::stable_sort(order.begin() + due, order.end(),
                   [&](std::size_t a, std::size_t b) { return cards[a].due < cards[b].due; });
  std::map<int, LedgerCardAnswer> last;
  for (const LedgerCardAnswer& answer : LedgerCardAnswers(ledger)) last[answer.card] = answer;
  std::vector<CardLine> lines;
  for (const std::size_t i : order) {
    lines.push_back(LineOf(cards[i], today));
    const auto answer = last.find(cards[i].id);
    if (answer != last.end()) lines.back().last = answer->second;
  }
  return lines;
}

int CountDueCards(LedgerConnection& ledger, std::int32_t today) {
  int due = 0;
  if (!ledger.CanRead()) return due;
  IgnoringErrors([&] {
    for (const LedgerCard& card : LedgerCards(ledger)) due += card.due <= today ? 1 : 0;
  });
  return due;
}

std::string KindText(LedgerCard::Kind kind) {
  static constexpr std::array kTexts{"marked bar", "trade", "loss"};
  return kTexts.at(static_cast<std::size_t>(kind));
}

std::string DecisionText(LedgerCardAnswer::Decision decision) {
  static constexpr std::array kTexts{"long", "short", "nothing"};
  return kTexts.at(static_cast<std::size_t>(decision));
}

std::string VerdictText(LedgerCardAnswer::Verdict verdict) {
  static constexpr std::array kTexts{"good", "fair", "poor"};
  return kTexts.at(static_cast<std::size_t>(verdict));
}

}  // namespace velumar
