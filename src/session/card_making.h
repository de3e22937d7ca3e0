#pragma once

#include <optional>

#include "ledger/cards.h"
#include "marketdata/index_cache.h"
#include "platform/services.h"
#include "session/blind_mask.h"
#include "session/sim_session.h"

namespace velumar {

// Makes cards. A card of a bar shows the bars before it, under a mask of its own, so a card of a
// blind session gives nothing away: the ledger has its security only in the encoded key, and lists
// show it once the session is revealed. A bar has one card, however often it is asked for.
class CardMaker {
 public:
  // With `scales`, prices are masked too.
  CardMaker(LedgerConnection& ledger, IndexCache& cache, const WallClock& clock, bool scales)
      : ledger_(ledger), cache_(cache), clock_(clock), scales_(scales) {}

  // Both return false if the bar has a card already, and throw std::exception with the reason if
  // there can't be one.

  // A card of the current bar of the loaded run; `key` is that of a blind one.
  bool MarkBar(const SimSession& session, const std::optional<BlindKey>& key);
  // A card of the bar at which a trade was entered.
  bool MakeOfTrade(const LedgerOrderKey& entry, LedgerCard::Kind kind = LedgerCard::Kind::kTrade);

  struct Losses {
    int made = 0;
    int refused = 0;  // larger losses of which no card could be made
  };
  // Up to `most` new cards of the largest losses: in R, then, of trades whose risk isn't known, in
  // money. Throws LedgerError.
  Losses MakeOfLosses(int most);

 private:
  struct Bar;
  bool Make(const Bar& bar, LedgerCard card);

  LedgerConnection& ledger_;
  IndexCache& cache_;
  const WallClock& clock_;
  bool scales_;
};

}  // namespace velumar
