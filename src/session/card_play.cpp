#include "session/card_play.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "base/decimal.h"
#include "base/ignoring.h"
#include "results/run_record.h"
#include "session/moment.h"
#include "session/plan_levels.h"
#include "session/run_source.h"

namespace velumar {

namespace {

using Decision = LedgerCardAnswer::Decision;

double CloseOf(const SimSession& session, int bar) {
  return ReadableDouble(session.BarClose.at(static_cast<std::size_t>(bar)));
}

double StopFill(const SimSession& session, int bar, double stop, bool is_long) {
  const float open = session.BarOpen.at(static_cast<std::size_t>(bar));
  // Series of closes only have 0 as open.
  const double first = open == 0 ? CloseOf(session, bar) : ReadableDouble(open);
  return is_long ? std::min(stop, first) : std::max(stop, first);
}

std::string SideName(const CardDecision& decision) { return decision.IsLong() ? "Long" : "Short"; }

// An order's plan is in the prices in which it was played. They and those of the card differ by a
// factor.
CardDecision DecisionOf(const RunOrder& order, double shown_price) {
  CardDecision decision{order.is_long ? Decision::kLong : Decision::kShort, {}, 0};
  if (!order.plan) return decision;
  decision.confidence = order.plan->confidence;
  const double price = order.close.value_or(order.price);
  // The plan has the stop as it was moved last; what was risked is that of the decision.
  const double points = order.quantity.value_or(0) * order.money_per_point.value_or(0);
  if (order.plan->risk && points > 0 && price != 0) {
    const double distance = *order.plan->risk / points;
    const double stop = order.is_long ? price - distance : price + distance;
    decision.stop = ReadableDouble(static_cast<float>(stop / price * shown_price));
  }
  return decision;
}

}  // namespace

CardOutcome OutcomeOf(const SimSession& session, const CardDecision& decision, int bar, int last) {
  CardOutcome outcome{decision, bar, CloseOf(session, bar)};
  if (!decision.Trades()) return outcome;
  const bool is_long = decision.IsLong();
  const double risk = decision.stop ? StopDistance(*decision.stop, is_long, outcome.price) : 0;
  double exit = CloseOf(session, last);
  for (int at = bar + 1; risk > 0 && at <= last && !outcome.stopped; ++at) {
    if (!BarReaches(session, at, static_cast<float>(*decision.stop), is_long)) continue;
    outcome.stopped = at;
    exit = StopFill(session, at, *decision.stop, is_long);
  }
  outcome.points =
      is_long ? DecimalDifference(exit, outcome.price) : DecimalDifference(outcome.price, exit);
  if (risk > 0) outcome.r = *outcome.points / risk;
  return outcome;
}

CardPlay::CardPlay(SimSession& session, Platform& platform, LedgerConnection& ledger,
                   IndexCache& cache, RunControl& run)
    : session_(session),
      platform_(platform),
      ledger_(ledger),
      cache_(cache),
      run_(run),
      random_(platform.random_seed ? *platform.random_seed : std::random_device()()) {}

std::optional<NextRun> CardPlay::ChoiceOf(const LedgerCard& card) {
  const auto refuse = [this](const std::string& why) {
    platform_.boxes.Show("This card can't be played. " + why + " It can be deleted in the list.",
                         BoxIcon::kExclamation);
    return std::nullopt;
  };
  NextRun choice{
      .series = {card.directory, std::string(kBlindSymbol), card.interval, card.date, true},
      .key = Decoded(card.mask),
      .recorded = false};
  if (!choice.key) return refuse("Its key in the ledger is damaged.");
  // Drawings of an earlier answer would show up under the same name.
  choice.key->code = static_cast<std::uint32_t>(random_());
  LedgerPlayed& shown = choice.resumed.emplace();
  LedgerMoment& moment = shown.moment;
  moment.bar = moment.newest_shown = moment.first_shown = card.bar;
  moment.date = card.date;
  moment.time = card.time;
  moment.bars_check = card.bars_check;
  try {
    const BarArrays bars = ReadRunSeries(choice.series, choice.key, cache_).bars;
    if (!SeriesChange(moment, SeriesView(bars)).empty() ||
        std::cmp_less_equal(bars.dates.size(), card.bar + 1)) {
      return refuse("Its data has changed since it was made.");
    }
  } catch (const std::exception&) {
    return refuse("Its data can't be read any more.");
  }
  return choice;
}

bool CardPlay::Show(const LedgerCard& card) {
  const std::optional<NextRun> choice = ChoiceOf(card);
  if (!choice) return false;
  card_ = card;
  now_ = {};
  then_.reset();
  playing_ = run_.ShowUnrecorded(*choice);
  if (playing_) last_ = LastBar();
  return playing_;
}

// A session that may go on must not get to know its next bars from a card.
int CardPlay::LastBar() const {
  int last = std::min(card_.bar + kBars, session_.LastArrayIndex());
  IgnoringErrors([&] {  // without its session
    const LedgerPlayed played = LedgerReadSession(ledger_, card_.session);
    if (played.session.ended) return;
    last = std::clamp(std::max(played.moment.newest_shown, played.moment.bar), card_.bar + 1, last);
  });
  return last;
}

std::string CardPlay::Problem(const CardDecision& decision) const {
  if (!decision.Trades() || !decision.stop) return {};
  const double price = CloseOf(session_, card_.bar);
  if (StopDistance(*decision.stop, decision.IsLong(), price) > 0) return {};
  return "The stop of a " + SideName(decision) + " must be " +
         (decision.IsLong() ? "below " : "above ") + PlanPriceText(price) + ".";
}

bool CardPlay::Decide(const CardDecision& decision) {
  if (decision.Trades()) {
    const double price = CloseOf(session_, card_.bar);
    session_.Orders.push_back({card_.bar, price, decision.IsLong(), true});
    LedgerPlan plan;
    plan.stop = decision.stop;
    plan.stop_since = card_.bar;
    session_.Plans.Add({.is_long = decision.IsLong(),
                        .bar = card_.bar,
                        .price = price,
                        .quantity = 1,
                        .held = 1,
                        .plan = plan});
  }
  IgnoringErrors([this] { RecallThen(); });  // orders may be gone with their session
  session_.ShowsEarlier = true;
  if (!run_.PlayOnTo(last_)) return false;
  now_ = OutcomeOf(session_, decision, card_.bar, last_);
  return true;
}

// An order fills at the close of its bar, so its price is known under the card's mask too.
void CardPlay::RecallThen() {
  const LedgerScope scope = ScopeOfRun(ledger_, card_.order.run);
  for (const RunOrder& order : ReadRecord(ledger_, scope).orders) {
    const int bar = order.bar.value_or(-1);
    if (order.quantity.value_or(0) == 0 || bar < card_.bar || bar > last_) continue;
    const bool entry = order.kind == RunOrder::Kind::kEntry;
    const double price = CloseOf(session_, bar);
    session_.EarlierOrders.push_back({bar, price, order.is_long, entry, true});
    const bool meant = card_.order.place == 0 ? entry && !then_ : order.key == card_.order;
    if (meant) then_ = OutcomeOf(session_, DecisionOf(order, price), bar, last_);
  }
}

CardTurn CardPlay::Answer(LedgerCardAnswer::Verdict verdict) {
  const CardTurn turn = NextTurn(card_, verdict, now_.r, platform_.clock.Today());
  const bool trades = now_.decision.Trades();
  LedgerAnswerCard(ledger_, {.card = card_.id,
                             .answered = platform_.clock.UtcMoment(),
                             .decision = now_.decision.side,
                             .stop = trades ? now_.decision.stop : std::nullopt,
                             .confidence = now_.decision.confidence,
                             .bars = BarsPlayed(),
                             .points = now_.points,
                             .r = now_.r,
                             .verdict = verdict,
                             .step = turn.step,
                             .due = turn.due});
  return turn;
}

void CardPlay::Leave() {
  if (std::exchange(playing_, false)) run_.Leave();
}

}  // namespace velumar
