#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ledger/cards.h"

namespace velumar {

// When cards come back. docs/cards.md explains the rules. Days are local days, yyyymmdd.

// The days that a card waits on each step.
inline constexpr std::array<int, 5> kCardDays{1, 3, 7, 21, 60};

// Losses are practised at once: they were made on request. What has just been played is still in
// the trader's mind and comes back tomorrow.
std::int32_t FirstDueDay(LedgerCard::Kind kind, std::int32_t today);

struct CardTurn {
  int step = 0;
  std::int32_t due = 0;
};
// After an answer: a good verdict moves the card a step up, a fair one leaves it, a poor one moves
// it to the first; a result below 0 R takes a step off. Before it was due it doesn't move up. `r`
// is empty if nothing was risked.
CardTurn NextTurn(const LedgerCard& card, LedgerCardAnswer::Verdict verdict,
                  std::optional<double> r, std::int32_t today);

// The security of a card, also of one that is still hidden. For comparing only.
std::string SecurityOf(const LedgerCard& card);

// The indices of the cards that are due, those that waited longest first, but never two of a
// security in a row if that can be avoided. `last` is the security of the card before them.
std::vector<std::size_t> DueCards(const std::vector<LedgerCard>& cards, std::int32_t today,
                                  std::string_view last = {});

}  // namespace velumar
