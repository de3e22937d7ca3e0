#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "ledger/cards.h"

namespace velumar {

// A card of the ledger, as lists show it. What it is of stays hidden until it is answered, whenever
// it is due again, and in a blind session that is not revealed: a name on the way to the card would
// answer it.
struct CardLine {
  LedgerCard card;
  bool due = false;
  bool hidden = false;
  // Of the last bar that it shows, real; empty and 0 if hidden.
  std::string symbol;
  std::int32_t date = 0;
  std::int32_t time = 0;
  std::optional<LedgerCardAnswer> last;  // answer
};

// Those that are due first, in the order in which they are played, then by the day on which they
// come back. `today` is the local day. Throws LedgerError.
std::vector<CardLine> ListCards(LedgerConnection& ledger, std::int32_t today);

// How many are due; 0 without a ledger that can be read.
int CountDueCards(LedgerConnection& ledger, std::int32_t today);

// "marked bar", "trade", "loss".
std::string KindText(LedgerCard::Kind kind);
// "long", "short", "nothing".
std::string DecisionText(LedgerCardAnswer::Decision decision);
// "good", "fair", "poor".
std::string VerdictText(LedgerCardAnswer::Verdict verdict);

}  // namespace velumar
