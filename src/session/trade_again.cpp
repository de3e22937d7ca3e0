#include "session/trade_again.h"

#include <algorithm>
#include <stdexcept>
#include <string>

#include "base/number_text.h"
#include "results/trade_list.h"
#include "session/blind_mask.h"
#include "session/moment.h"
#include "session/run_source.h"

namespace velumar {

namespace {

int BarOf(const TradeEnd& end, const SeriesView& bars) {
  const LedgerMoment moment = MomentOfRow(end.iso_date, end.time);
  const int bar = BarOfMoment(moment, bars);
  const auto at = static_cast<std::size_t>(bar);
  if (bar < 0 || bars.dates[at] != moment.date || bars.times[at] != moment.time) {
    throw std::runtime_error("The data has no bar of " + end.date + " " + end.time + " any more.");
  }
  return bar;
}

struct FoundTrade {
  TradeEnd entry;
  bool is_long = true;
  std::vector<TradeEnd> exits;
};

FoundTrade FindTrade(const std::vector<RunRecord>& account, const LedgerOrderKey& key) {
  const TradeList list = ListTrades(account);
  std::optional<FoundTrade> found;
  const auto see = [&](const OpenLot& lot) {
    if (!lot.entry || lot.entry->key != key) return false;
    if (!found) found = {*lot.entry, lot.is_long, {}};
    return true;
  };
  for (const Trade& trade : list.trades) {
    if (see(trade.lot)) found->exits.push_back(trade.exit);
  }
  for (const OpenLot& lot : list.open) see(lot);
  if (!found) throw std::runtime_error("The ledger does not have the entry of this trade.");
  return *found;
}

// `began` is the first run of the scope.
LedgerSession SessionOf(LedgerConnection& connection, LedgerScope scope, const LedgerRun& began,
                        const LedgerAccount& account) {
  const auto text = [](double figure) { return PlainNumberText(static_cast<float>(figure)); };
  LedgerSession session;
  session.directory = began.directory;
  session.symbol = began.symbol;
  session.interval = began.interval;
  session.account = account;
  session.account.money = text(began.starting_money);
  session.account.margin = text(began.margin);
  session.account.money_per_point = text(began.money_per_point);
  if (scope.kind == LedgerScope::Kind::kSession) {
    const LedgerSession played = LedgerReadSession(connection, scope.number).session;
    session.account = played.account;
    // That of a blind session was typed for other prices.
    if (!played.mask.empty()) session.account.money_per_point = text(began.money_per_point);
  }
  return session;
}

}  // namespace

LedgerPlayed SessionBeforeTrade(LedgerConnection& connection, const LedgerOrderKey& entry,
                                const LedgerAccount& account, IndexCache& cache) {
  const LedgerScope scope = ScopeOfRun(connection, entry.run);
  const std::vector<RunRecord> runs = ReadAccount(connection, scope);
  const FoundTrade trade = FindTrade(runs, entry);
  LedgerPlayed played;
  played.session = SessionOf(connection, scope, runs.back().began.value_or(LedgerRun()), account);
  if (played.session.symbol == kBlindSymbol) {
    throw std::runtime_error("It is part of a blind session. End that first, which reveals it.");
  }
  const RunSeries series{played.session.directory, played.session.symbol, played.session.interval,
                         0};
  const BarArrays arrays = ReadRunSeries(series, std::nullopt, cache).bars;
  const SeriesView bars(arrays);
  const int before = BarOf(trade.entry, bars) - 1;
  const auto shown = static_cast<std::size_t>(std::max(before, 0));
  played.session.start_day = bars.dates[shown];
  played.session.again = entry;
  LedgerMoment& moment = played.moment;
  moment.bar = before;
  moment.newest_shown = moment.first_shown = static_cast<int>(shown);
  moment.date = bars.dates[shown];
  moment.time = bars.times[shown];
  return played;
}

std::vector<OrderMark> MarksOfTrade(LedgerConnection& connection, const LedgerOrderKey& entry,
                                    const SeriesView& bars) {
  const FoundTrade trade =
      FindTrade(ReadAccount(connection, ScopeOfRun(connection, entry.run)), entry);
  const auto mark = [&](const TradeEnd& end, bool entered) {
    return OrderMark{BarOf(end, bars), end.price, trade.is_long, entered, true};
  };
  std::vector<OrderMark> marks{mark(trade.entry, true)};
  for (const TradeEnd& end : trade.exits) marks.push_back(mark(end, false));
  return marks;
}

}  // namespace velumar
