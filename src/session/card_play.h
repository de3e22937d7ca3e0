#pragma once

#include <optional>
#include <random>
#include <string>

#include "ledger/cards.h"
#include "marketdata/index_cache.h"
#include "platform/platform.h"
#include "session/card_schedule.h"
#include "session/run_control.h"
#include "session/sim_session.h"

namespace velumar {

// What a trader does at a bar.
struct CardDecision {
  LedgerCardAnswer::Decision side = LedgerCardAnswer::Decision::kNothing;
  std::optional<double> stop = {};
  int confidence = 0;  // 1 to 5; 0: none given

  bool Trades() const { return side != LedgerCardAnswer::Decision::kNothing; }
  bool IsLong() const { return side == LedgerCardAnswer::Decision::kLong; }
};

// What a decision has brought, in the prices that are shown. It fills at the close of its bar, and
// is held to the last bar or to its stop: at the stop's price or, if a bar opens beyond it, at its
// open.
struct CardOutcome {
  CardDecision decision;
  int bar = 0;
  double price = 0;
  std::optional<double> points = {};  // empty if nothing was done
  std::optional<double> r = {};       // points as a multiple of those to the stop
  std::optional<int> stopped = {};    // the bar that reached the stop
};
CardOutcome OutcomeOf(const SimSession& session, const CardDecision& decision, int bar, int last);

// Plays a card on the chart: the bars before the decision, masked, then, once the trader has
// decided, up to 20 more. The store never holds a later bar. Nothing is written to the ledger but
// the answer.
class CardPlay {
 public:
  static constexpr int kBars = 20;

  CardPlay(SimSession& session, Platform& platform, LedgerConnection& ledger, IndexCache& cache,
           RunControl& run);

  // Shows the bars before the decision. If the data of the card is gone or has changed, or if they
  // can't be shown, shows a box and returns false; nothing is played then.
  bool Show(const LedgerCard& card);
  // Why this can't be decided; empty if it can.
  std::string Problem(const CardDecision& decision) const;
  // Plays on, with both decisions on the chart. Returns false if the card was left during that, or
  // if the feed failed.
  bool Decide(const CardDecision& decision);
  // Both decisions, after Decide. What was done then: the trade's entry or, at a marked bar, the
  // first entry of its session in these bars; nothing if there was none.
  const CardOutcome& Now() const { return now_; }
  const std::optional<CardOutcome>& Then() const { return then_; }
  int BarsPlayed() const { return last_ - card_.bar; }
  // Keeps the answer. Returns when the card comes back. Throws LedgerError.
  CardTurn Answer(LedgerCardAnswer::Verdict verdict);
  // The card is no longer shown.
  void Leave();

  // True from Show to Leave.
  bool Playing() const { return playing_; }
  const LedgerCard& Card() const { return card_; }

 private:
  std::optional<NextRun> ChoiceOf(const LedgerCard& card);
  void RecallThen();
  int LastBar() const;

  SimSession& session_;
  Platform& platform_;
  LedgerConnection& ledger_;
  IndexCache& cache_;
  RunControl& run_;
  std::mt19937_64 random_;  // names of the shown series
  LedgerCard card_;
  CardOutcome now_;
  std::optional<CardOutcome> then_;
  int last_ = 0;  // the last bar that is played
  bool playing_ = false;
};

}  // namespace velumar
