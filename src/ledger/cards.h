#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "ledger/ledger.h"

namespace velumar {

// A moment of a chart that comes back to be decided again: it shows the bars up to one, and the
// trader says what to do before the next.
struct LedgerCard {
  enum class Kind : std::uint8_t { kMarked, kTrade, kLoss };

  int id = 0;
  Kind kind = Kind::kMarked;
  int session = 0;            // in which it was played; 0: none
  LedgerOrderKey order = {};  // the entry of the trade; without a place for a marked bar
  std::string directory = {};
  std::string symbol = {};    // read: of its session, which is masked until a blind one is revealed
  std::string interval = {};  // "D" or minutes
  std::string mask = {};      // the encoded key under which it is played
  std::string position = {};  // the same for all cards of one bar of a series; gives neither away
  // The last bar that it shows, as it is masked, and the checksum of the bars up to it.
  int bar = 0;
  std::int32_t date = 0;
  std::int32_t time = 0;
  std::string bars_check = {};
  std::string made = {};       // as LedgerSession::begun
  std::int32_t first_due = 0;  // local day, yyyymmdd

  // From its answers.
  int answers = 0;
  int step = 0;          // of the schedule
  std::int32_t due = 0;  // local day
};

struct LedgerCardAnswer {
  enum class Decision : std::uint8_t { kLong, kShort, kNothing };
  enum class Verdict : std::uint8_t { kGood, kFair, kPoor };

  int card = 0;
  std::string answered = {};  // as LedgerSession::begun
  Decision decision = Decision::kNothing;
  std::optional<double> stop = {};  // in the prices that the card shows
  int confidence = 0;               // 1 to 5; 0: none given
  int bars = 0;                     // that were played on
  std::optional<double> points = {};
  std::optional<double> r = {};  // of the decision after these bars; empty without a stop
  Verdict verdict = Verdict::kFair;
  int step = 0;          // of the schedule, from now on
  std::int32_t due = 0;  // the local day on which the card comes back
};

// All throw LedgerError. A ledger of an earlier version that is only read has no cards.

// Returns the card's number; nothing if its position has one already, which stays as it is.
std::optional<int> LedgerAddCard(LedgerConnection& connection, const LedgerCard& card);
// In the order in which they were made.
std::vector<LedgerCard> LedgerCards(LedgerConnection& connection);
// Those of a card, or of all cards, in the order in which they were given.
std::vector<LedgerCardAnswer> LedgerCardAnswers(LedgerConnection& connection,
                                                std::optional<int> card = {});
// Does nothing if the card was deleted.
void LedgerAnswerCard(LedgerConnection& connection, const LedgerCardAnswer& answer);
// With its answers, all or nothing. Returns false if there is no such card.
bool LedgerDeleteCard(LedgerConnection& connection, int id);

}  // namespace velumar
