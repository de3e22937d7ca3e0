#include "session/card_schedule.h"

#include <algorithm>
#include <map>
#include <utility>

#include "base/dates.h"
#include "session/blind_mask.h"

namespace velumar {

namespace {

using Verdict = LedgerCardAnswer::Verdict;

constexpr int kLastStep = static_cast<int>(kCardDays.size()) - 1;

// A security with more than half of the cards left must be next, or two of its cards meet later.
std::size_t NextPlace(const std::vector<std::string>& left, std::string_view last) {
  std::map<std::string_view, std::size_t> counts;
  for (const std::string& security : left) ++counts[security];
  const auto may_follow = [&](const std::string& security, bool only_frequent) {
    return security != last && (!only_frequent || 2 * counts[security] > left.size());
  };
  for (const bool only_frequent : {true, false}) {
    const auto found = std::ranges::find_if(
        left, [&](const std::string& security) { return may_follow(security, only_frequent); });
    if (found != left.end()) return static_cast<std::size_t>(found - left.begin());
  }
  return 0;
}

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
  std::vector<std::string> left;
  for (const std::size_t i : due) left.push_back(SecurityOf(cards[i]));
  std::vector<std::size_t> turns;
  std::string before(last);
  while (!due.empty()) {
    const auto place = static_cast<std::ptrdiff_t>(NextPlace(left, before));
    turns.push_back(due[static_cast<std::size_t>(place)]);
    before = std::move(left[static_cast<std::size_t>(place)]);
    due.erase(due.begin() + place);
    left.erase(left.begin() + place);
  }
  return turns;
}

}  // namespace velumar
