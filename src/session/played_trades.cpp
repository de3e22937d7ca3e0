#include "session/played_trades.h"

#include <algorithm>
#include <map>
#include <optional>
#include <string>
#include <tuple>
#include <utility>

#include "base/ignoring.h"
#include "results/trade_record.h"
#include "session/run_source.h"

namespace velumar {

namespace {

// A series as a session shows it.
class SeriesOfSessions {
 public:
  explicit SeriesOfSessions(IndexCache& cache) : cache_(cache) {}

  // Null if it can't be read. The result is valid until the next call.
  const BarArrays* Read(const RunSeries& series, const std::string& mask) {
    Key key{series.directory, series.symbol, series.interval, mask};
    if (key == key_) return bars_ ? &*bars_ : nullptr;
    key_ = std::move(key);
    bars_.reset();
    IgnoringErrors([&] { bars_ = ReadRunSeries(series, Decoded(mask), cache_).bars; });
    return bars_ ? &*bars_ : nullptr;
  }

 private:
  using Key = std::tuple<std::string, std::string, std::string, std::string>;

  IndexCache& cache_;
  Key key_;
  std::optional<BarArrays> bars_;
};

// Where a session began, and its mask while it hides its security.
struct Beginning {
  int first_shown = 0;
  std::string mask;
};

Beginning BeginningOf(LedgerConnection& connection, const LedgerScopeState& state,
                      const RunRecord& record) {
  Beginning beginning{state.newest_shown, {}};
  for (const RunOrder& order : record.orders) {
    beginning.first_shown = std::min(beginning.first_shown, order.bar.value_or(0));
  }
  if (state.scope.kind != LedgerScope::Kind::kSession) return beginning;
  const LedgerPlayed played = LedgerReadSession(connection, state.scope.number);
  beginning.first_shown = played.moment.first_shown;
  if (played.session.symbol == kBlindSymbol) beginning.mask = played.session.mask;
  return beginning;
}

// Without the data, trades that were kept with it stay as they are. Both are in the order in which
// they were closed.
void TakeKept(LedgerTrades& trades, LedgerTrades kept) {
  auto next = kept.trades.begin();
  for (LedgerTrade& trade : trades.trades) {
    const auto found = std::find_if(next, kept.trades.end(), [&](const LedgerTrade& one) {
      return one.entry.order == trade.entry.order && one.exit.order == trade.exit.order &&
             one.quantity == trade.quantity;
    });
    if (found == kept.trades.end()) continue;
    trade = *found;
    next = found + 1;
  }
  if (kept.closes.empty()) return;
  trades.first_bar = kept.first_bar;
  trades.first_day = kept.first_day;
  trades.last_day = kept.last_day;
  trades.closes = std::move(kept.closes);
}

// Brings trades up to date.
class Completing {
 public:
  Completing(LedgerConnection& connection, IndexCache& cache)
      : connection_(connection), series_(cache) {}

  LedgerTrades Complete(const LedgerScopeState& state, LedgerTrades kept) {
    const std::vector<RunRecord> account = ReadAccount(connection_, state.scope);
    const Beginning beginning = BeginningOf(connection_, state, account.back());
    const BarArrays* const bars = series_.Read(
        {state.began.directory, state.began.symbol, state.began.interval, 0}, beginning.mask);
    LedgerTrades trades = Record(account, state, beginning, bars);
    if (trades.closes.empty()) TakeKept(trades, std::move(kept));
    // Trades that can't be kept now are computed again the next time.
    if (connection_.CanWrite()) IgnoringErrors([&] { LedgerWriteTrades(connection_, trades); });
    return trades;
  }

 private:
  static LedgerTrades Record(const std::vector<RunRecord>& account, const LedgerScopeState& state,
                             const Beginning& beginning, const BarArrays* bars) {
    if (bars == nullptr) return RecordTrades(account, state, nullptr);
    const PlayedSeries series{bars->dates,  bars->highs,           bars->lows,
                              bars->closes, beginning.first_shown, state.newest_shown};
    const bool same = HasBarsOfOrders(account.back(), series);
    return RecordTrades(account, state, same ? &series : nullptr);
  }

  LedgerConnection& connection_;
  SeriesOfSessions series_;
};

PlayedSeries SeriesOf(const SimSession& session) {
  return {session.BarDate,  session.BarHigh,       session.BarLow,
          session.BarClose, session.FirstShownBar, session.NewestShownBar};
}

std::vector<PlayedScope> KeptScopes(LedgerConnection& connection) {
  std::vector<PlayedScope> scopes;
  for (LedgerScopeState& state : LedgerScopes(connection)) scopes.push_back({std::move(state), {}});
  std::map<LedgerScope, PlayedScope*> by_scope;
  for (PlayedScope& scope : scopes) by_scope.emplace(scope.state.scope, &scope);
  for (LedgerTrades& trades : LedgerReadTrades(connection)) {
    const auto scope = by_scope.find(trades.scope);
    if (scope == by_scope.end()) continue;
    if (trades.closes.empty()) scope->second->state.up_to_date = false;  // or they are damaged
    scope->second->trades = std::move(trades);
  }
  return scopes;
}

}  // namespace

std::vector<LedgerTrade> RecordedTrades(const SimSession& session,
                                        const std::vector<Trade>& closed) {
  const PlayedSeries series = SeriesOf(session);
  std::vector<LedgerTrade> trades;
  trades.reserve(closed.size());
  for (const Trade& trade : closed) trades.push_back(RecordTrade(trade, &series));
  return trades;
}

void KeepTrades(LedgerConnection& connection, const SimSession& session) {
  if (session.SessionNumber == 0 || !connection.CanWrite()) return;
  const LedgerScope scope = LedgerScope::Session(session.SessionNumber);
  const std::vector<RunRecord> account{ReadRecord(connection, scope)};
  LedgerScopeState state;
  state.scope = scope;
  state.orders = static_cast<int>(account.back().orders.size());
  state.newest_shown = session.NewestShownBar;
  const PlayedSeries series = SeriesOf(session);
  LedgerWriteTrades(connection, RecordTrades(account, state, &series));
}

std::vector<PlayedScope> PlayedScopes(
    LedgerConnection& connection, IndexCache& cache,
    const std::function<bool(std::size_t done, std::size_t all)>& progress) {
  std::vector<PlayedScope> scopes = KeptScopes(connection);
  std::vector<PlayedScope*> outdated;
  for (PlayedScope& scope : scopes) {
    if (!scope.state.up_to_date) outdated.push_back(&scope);
  }
  // Sessions of one series follow each other, so that it is read once.
  std::ranges::stable_sort(outdated, {}, [](const PlayedScope* scope) {
    const LedgerRun& began = scope->state.began;
    return std::tie(began.directory, began.symbol, began.interval);
  });
  Completing completing(connection, cache);
  std::size_t done = 0;
  for (PlayedScope* const scope : outdated) {
    scope->trades = completing.Complete(scope->state, std::move(scope->trades));
    scope->state.up_to_date = true;
    if (progress && !progress(++done, outdated.size())) break;
  }
  std::erase_if(scopes, [](const PlayedScope& scope) { return !scope.state.up_to_date; });
  return scopes;
}

}  // namespace velumar
