#include "session/card_making.h"

#include <algorithm>
#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "base/checksum.h"
#include "base/dates.h"
#include "ledger/trades.h"
#include "marketdata/interval.h"
#include "results/run_record.h"
#include "session/card_schedule.h"
#include "session/moment.h"
#include "session/played_trades.h"
#include "session/run_source.h"

namespace velumar {

// A bar of a series as it was played.
struct CardMaker::Bar {
  RunSeries series;
  std::optional<BlindKey> key;  // of a blind session that is not revealed
  LedgerMoment moment;
};

namespace {

int ExactBar(const LedgerMoment& moment, const SeriesView& bars) {
  const int bar = BarOfMoment(moment, bars);
  const auto i = static_cast<std::size_t>(bar);
  if (bar < 0 || bars.dates[i] != moment.date || bars.times[i] != moment.time) {
    throw std::runtime_error("The data has no such bar any more.");
  }
  if (bar == 0) throw std::runtime_error("There is no bar before it that could be shown.");
  return bar;
}

// Directories are recorded with and without a separator at the end.
std::string PositionText(const RunSeries& real, std::int32_t date, std::int32_t time) {
  std::string text = real.directory;
  while (text.ends_with('/') || text.ends_with('\\')) text.pop_back();
  for (const std::string& part :
       {real.symbol, IntervalToMatch(real.interval), std::to_string(date), std::to_string(time)}) {
    text += '\n' + part;
  }
  return ChecksumText(Checksum(text));
}

RunOrder OrderOf(LedgerConnection& ledger, const LedgerOrderKey& key, LedgerScope scope,
                 RunSeries& series) {
  for (const RunRecord& record : ReadAccount(ledger, scope)) {
    const auto order = std::ranges::find(record.orders, key, &RunOrder::key);
    if (order == record.orders.end() || !record.began) continue;
    series = {record.began->directory, record.began->symbol, record.began->interval, 0};
    return *order;
  }
  throw std::runtime_error("The ledger does not have the entry of this trade.");
}

struct Loss {
  LedgerOrderKey entry;
  std::optional<double> r;
  double money = 0;

  // A smaller rank is a larger loss.
  auto Rank() const { return std::tuple(!r.has_value(), r.value_or(0), money, entry); }
};

// Each is looked up in the ledger and in the data.
constexpr int kMostRefused = 100;

std::vector<Loss> LargestLosses(LedgerConnection& ledger, IndexCache& cache) {
  std::map<LedgerOrderKey, double> risks;
  for (const LedgerEntryPlan& plan : LedgerEntryPlans(ledger)) risks[plan.order] = plan.risk;
  std::vector<Loss> losses;
  for (const PlayedScope& scope : PlayedScopes(ledger, cache)) {
    for (const LedgerTrade& trade : scope.trades.trades) {
      if (trade.money.value_or(0) >= 0 || trade.entry.order.place == 0) continue;
      const auto risk = risks.find(trade.entry.order);
      Loss loss{trade.entry.order, {}, *trade.money};
      if (risk != risks.end() && risk->second > 0) {
        loss.r = loss.money / (risk->second * trade.entry_share);
      }
      losses.push_back(loss);
    }
  }
  std::ranges::sort(losses, {}, &Loss::Rank);
  return losses;
}

}  // namespace

bool CardMaker::Make(const Bar& bar, LedgerCard card) {
  RunSeries real = bar.series;
  BarArrays bars = ReadRunSeries(real, bar.key, cache_).bars;
  const int place = ExactBar(bar.moment, SeriesView(bars));
  if (bar.key) {
    real.symbol = bar.key->symbol;
    bars = ReadReplayable(real, cache_);
  }
  const auto shown = static_cast<std::size_t>(place - 1);
  const auto mask = MaskOf(bars, shown, scales_);
  if (!mask) throw std::runtime_error("Its dates or prices can't be masked.");
  card.position = PositionText(real, bars.dates[shown + 1], bars.times[shown + 1]);
  card.mask = Encoded({real.symbol, real.symbol, bars.dates[shown], *mask, 0});
  mask->Hide(bars);
  const LedgerMoment last = MomentOfBar(SeriesView(bars), place - 1);
  card.directory = bar.series.directory;
  card.symbol = bar.series.symbol;
  card.interval = bar.series.interval;
  card.bar = last.bar;
  card.date = last.date;
  card.time = last.time;
  card.bars_check = last.bars_check;
  card.made = clock_.UtcMoment();
  card.first_due = FirstDueDay(card.kind, clock_.Today());
  return LedgerAddCard(ledger_, card).has_value();
}

bool CardMaker::MarkBar(const SimSession& session, const std::optional<BlindKey>& key) {
  if (!session.HasBar(session.BarIndex)) throw std::runtime_error("No bar is shown.");
  const auto i = static_cast<std::size_t>(session.BarIndex);
  Bar bar{session.Run, key, {}};
  bar.moment.date = session.BarDate[i];
  bar.moment.time = session.BarTime[i];
  return Make(bar, {.kind = LedgerCard::Kind::kMarked,
                    .session = session.SessionNumber,
                    .order = {NewestRun(ledger_), 0}});
}

bool CardMaker::MakeOfTrade(const LedgerOrderKey& entry, LedgerCard::Kind kind) {
  const LedgerScope scope = ScopeOfRun(ledger_, entry.run);
  Bar bar;
  const RunOrder order = OrderOf(ledger_, entry, scope, bar.series);
  LedgerCard card{.kind = kind, .order = entry};
  if (scope.kind == LedgerScope::Kind::kSession) {
    card.session = scope.number;
    const LedgerSession session = LedgerReadSession(ledger_, scope.number).session;
    if (session.symbol == kBlindSymbol) bar.key = Decoded(session.mask);
  }
  if (bar.series.symbol == kBlindSymbol && !bar.key) {
    throw std::runtime_error("It is part of a blind session that was deleted.");
  }
  bar.moment = MomentOfRow(order.iso_date, order.time);
  return Make(bar, card);
}

CardMaker::Losses CardMaker::MakeOfLosses(int most) {
  Losses losses;
  std::set<LedgerOrderKey> seen;
  for (const LedgerCard& card : LedgerCards(ledger_)) seen.insert(card.order);
  for (const Loss& loss : LargestLosses(ledger_, cache_)) {
    if (losses.made >= most || losses.refused >= kMostRefused) break;
    if (!seen.insert(loss.entry).second) continue;
    try {
      losses.made += MakeOfTrade(loss.entry, LedgerCard::Kind::kLoss) ? 1 : 0;
    } catch (const LedgerError&) {
      throw;
    } catch (const std::exception&) {
      ++losses.refused;
    }
  }
  return losses;
}

}  // namespace velumar
