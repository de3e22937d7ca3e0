#include "session/card_schedule.h"

#include <algorithm>
#include <list>
#include <map>
#include <utility>

#include "base/dates.h"
#include "session/blind_mask.h"

namespace velumar {

namespace {

using Verdict = LedgerCardAnswer::Verdict;

constexpr int kLastStep = static_cast<int>(kCardDays.size()) - 1;

// Cards in the order in which they fell due, to be taken one by one.
class Waiting {
 public:
  void Add(std::size_t card, std::string security) {
    ++counts_[security];
    cards_.push_back({card, std::move(security)});
  }
  bool Empty() const { return cards_.empty(); }

  // A security with more than half of the cards must be next, or two of its cards meet later.
  std::size_t TakeNext(std::string& last) {
    const auto frequent = std::ranges::find_if(
        counts_, [this](const auto& count) { return 2 * count.second > cards_.size(); });
    const bool forced = frequent != counts_.end() && frequent->first != last;
    auto next = std::ranges::find_if(cards_, [&](const Card& card) {
      return forced ? card.security == frequent->first : card.security != last;
    });
    if (next == cards_.end()) next = cards_.begin();
    const std::size_t index = next->index;
    last = std::move(next->security);
    --counts_[last];
    cards_.erase(next);
    return index;
  }

 private:
  struct Card {
    std::size_t index;
    std::string security;
  };
  std::list<Card> cards_;
  std::map<std::string, std::size_t> counts_;
};

}  // namespace

std::int32_t FirstDueDay(LedgerCard::Kind kind, std::int32_t today) {
  return kind == LedgerCard::Kind::kLoss ? today : DaysLater(today, kCardDays.front());
}

CardTurn NextTurn(const LedgerCard& card, Verdict verdict, std::optional<double> r,
                  std::int32_t today) {
  int step = verdict == Verdict::kPoor ? 0 : card.step + (verdict == Verdict::kGood ? 1 : 0);
  if (r.value_or(0) < 0) --step;
  if (today < card.due) step = std::min(step, card.step);
  step = std::clamp(step, 0, kLastStep);
  return {step, DaysLater(today, kCardDays.at(static_cast<std::size_t>(step)))};
}

std::string SecurityOf(const LedgerCard& card) {
  const auto key = Decoded(card.mask);
  return key ? key->symbol : card.symbol;
}

std::vector<std::size_t> DueCards(const std::vector<LedgerCard>& cards, std::int32_t today,
                                  std::string_view last) {
  std::vector<std::size_t> due;
  for (std::size_t i = 0; i < cards.size(); ++i) {
    if (cards[i].due <= today) due.push_back(i);
  }
  std::ranges::stable_sort(due, {}, [&cards](std::size_t i) { return cards[i].due; });
  Waiting waiting;
  for (const std::size_t i : due) waiting.Add(i, SecurityOf(cards[i]));
  std::vector<std::size_t> turns;
  for (std::string before(last); !waiting.Empty();) turns.push_back(waiting.TakeNext(before));
  return turns;
}

}  // namespace velumar
