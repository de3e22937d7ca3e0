#include "session/next_run.h"

#include <algorithm>
#include <functional>
#include <stdexcept>
#include <utility>

#include "base/text.h"
#include "ledger/drills.h"
#include "ledger/moved_orders.h"
#include "results/run_record.h"
#include "session/blind_draw.h"
#include "session/failure_box.h"
#include "session/moment.h"
#include "session/run_source.h"
#include "session/trade_again.h"

namespace velumar {

namespace {

// The orders of a session that are at other bars of its series now. One whose bar is gone is at the
// bar before.
std::vector<LedgerMovedOrder> MovedOrders(LedgerConnection& ledger, int session,
                                          const SeriesView& bars) {
  std::vector<LedgerMovedOrder> moved;
  for (const RunOrder& order : ReadRecord(ledger, LedgerScope::Session(session)).orders) {
    const int before = order.bar.value_or(0);
    const int now = std::max(BarOfMoment(MomentOfRow(order.iso_date, order.time), bars), 0);
    if (now != before) moved.push_back({order.key, order.iso_date, order.time, now, now - before});
  }
  return moved;
}

std::optional<NextRun> Chosen(MessageBoxes& boxes, const std::string& failure,
                              const std::function<std::optional<NextRun>()>& choose) {
  try {
    return choose();
  } catch (const std::exception& error) {
    ShowFailure(boxes, failure, error);
    return std::nullopt;
  }
}

}  // namespace

RunChooser::RunChooser(const SimSession& session, const RunInputs& inputs, Platform& platform,
                       LedgerConnection& ledger, IndexCache& cache)
    : session_(session),
      inputs_(inputs),
      platform_(platform),
      ledger_(ledger),
      cache_(cache),
      random_(platform.random_seed ? *platform.random_seed : std::random_device()()) {}

std::optional<NextRun> RunChooser::Entered() {
  return Chosen(platform_.boxes, "The run was not started.", [&] { return OfSeries(); });
}

std::optional<NextRun> RunChooser::Drawn(int bars) {
  return Chosen(platform_.boxes, "No chart was drawn.", [&] {
    const RunSeries entered{session_.DataDir, {}, inputs_.Interval()};
    NextRun drawn = Draw(entered, "", std::max(bars, kBarsAfterStart));
    drawn.bars = bars;
    return drawn;
  });
}

std::optional<NextRun> RunChooser::Session(int number) {
  return Chosen(platform_.boxes, "The session can't be resumed.",
                [&] { return OfSession(number); });
}

std::optional<NextRun> RunChooser::Trade(const LedgerOrderKey& entry) {
  return Chosen(platform_.boxes, "The trade can't be played again.",
                [&] { return OfTrade(entry); });
}

NextRun RunChooser::OfSeries() {
  const RunSeries entered{session_.DataDir, NormalisedSymbol(session_.Symbol), inputs_.Interval(),
                          inputs_.StartDay()};
  if (!inputs_.Blind()) return {.series = entered};
  const std::string symbol = inputs_.Symbol();
  return Draw(entered, symbol == kAnySecurity ? "" : NormalisedSymbol(symbol), kBarsAfterStart);
}

NextRun RunChooser::Draw(const RunSeries& entered, const std::string& symbol, int bars_after) {
  BlindKey key = DrawBlind({.directory = entered.directory,
                            .symbol = symbol,
                            .interval = entered.interval,
                            .scales = platform_.settings.Read(kBlindPricesSetting) != kRealPrices,
                            .shown = ShownLately(),
                            .bars_after = bars_after},
                           cache_, random_);
  const RunSeries masked{entered.directory, std::string(kBlindSymbol), entered.interval,
                         key.mask.Date(key.start_day), true};
  return {masked, std::move(key)};
}

// Newest last.
std::vector<std::string> RunChooser::ShownLately() {
  constexpr std::size_t kMost = 20;
  std::vector<std::string> symbols;
  if (!ledger_.CanRead()) return symbols;
  for (const LedgerPlayed& played : LedgerSessions(ledger_)) {
    const auto key = Decoded(played.session.mask);
    if (key && symbols.size() < kMost) symbols.push_back(key->symbol);
  }
  std::ranges::reverse(symbols);
  return symbols;
}

std::optional<NextRun> RunChooser::OfSession(int number) {
  const LedgerPlayed played = LedgerReadSession(ledger_, number);
  const LedgerSession& session = played.session;
  if (session.ended) throw std::runtime_error("It has been ended.");
  BookFromText(played.moment.book);
  NextRun choice{.series = {session.directory, session.symbol, session.interval, session.start_day,
                            !session.mask.empty()},
                 .key = Decoded(session.mask),
                 .resumed = played};
  if (choice.series.blind && !choice.key) {
    throw std::runtime_error("The ledger's key of this blind session is damaged.");
  }
  if (!MayGoOn(choice)) return std::nullopt;
  choice.bars = BarsLeftOfDrill(choice.resumed->moment);
  return choice;
}

// A chart of a drill ends where it would have ended. 0 if it is none.
int RunChooser::BarsLeftOfDrill(const LedgerMoment& moment) const {
  for (const LedgerDrill& drill : LedgerDrills(ledger_)) {
    if (std::ranges::find(drill.sessions, moment.session) == drill.sessions.end()) continue;
    return std::max(moment.first_shown + drill.bars - std::max(moment.bar, 0), 1);
  }
  return 0;
}

NextRun RunChooser::OfTrade(const LedgerOrderKey& entry) {
  LedgerAccount account;
  account.commission = inputs_.Commission();
  account.vat = inputs_.Vat();
  const LedgerPlayed played = SessionBeforeTrade(ledger_, entry, account, cache_);
  const LedgerSession& session = played.session;
  return {.series = {session.directory, session.symbol, session.interval, session.start_day},
          .resumed = played};
}

bool RunChooser::MayGoOn(NextRun& choice) {
  LedgerMoment& moment = choice.resumed->moment;
  const BarArrays series = ReadRunSeries(choice.series, choice.key, cache_).bars;
  const SeriesView bars(series);
  const std::string change = SeriesChange(moment, bars);
  if (change.empty()) return true;
  const std::size_t answer =
      platform_.boxes.Ask(choice.series.symbol + " has changed since this session was played. " +
                              change + "\nThe orders stay as they were filled.",
                          {"Resume anyway", "Cancel"});
  if (answer != 0) return false;
  const int moved = BarOfMoment(moment, bars) - moment.bar;
  for (int* bar : {&moment.bar, &moment.newest_shown, &moment.first_shown}) *bar += moved;
  if (ledger_.CanWrite()) LedgerMoveOrders(ledger_, MovedOrders(ledger_, moment.session, bars));
  return true;
}

}  // namespace velumar
