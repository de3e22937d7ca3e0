#include "results/trade_record.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>

#include "base/dates.h"
#include "base/decimal.h"

namespace velumar {

namespace {

std::int32_t DayOf(const TradeEnd& end) {
  std::string digits = end.iso_date;
  std::erase(digits, '-');
  return DateFromDigits(digits).value_or(0);
}

std::int32_t TimeOf(const TradeEnd& end) {
  std::string digits = end.time;
  std::erase(digits, ':');
  std::int32_t time = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), time);
  return time;
}

struct Extreme {
  double distance = 0;  // 0 or more
  int bar = 0;
};

// How far the price went one way between the bars, from the entry's price.
Extreme FarthestFrom(double price, bool up, const PlayedSeries& series, int entry_bar,
                     int exit_bar) {
  Extreme extreme{0, entry_bar};
  for (int bar = entry_bar + 1; bar <= exit_bar; ++bar) {
    const auto at = static_cast<std::size_t>(bar);
    const double distance = up ? DecimalDifference(ReadableDouble(series.highs[at]), price)
                               : DecimalDifference(price, ReadableDouble(series.lows[at]));
    if (distance > extreme.distance) extreme = {distance, bar};
  }
  return extreme;
}

bool HasBar(const LedgerTradeEnd& end, const PlayedSeries& series) {
  const auto bar = static_cast<std::size_t>(end.bar.value_or(-1));
  return bar < series.dates.size() && (end.day == 0 || series.dates[bar] == end.day);
}

LedgerTradeEnd EndOfRecord(const TradeEnd& end) {
  return {
      .order = end.key, .day = DayOf(end), .time = TimeOf(end), .bar = end.bar, .price = end.price};
}

// A holding may have been entered in the bars of an earlier run, and a run may be continued on
// other data: a bar that is not one of the series has no excursions and no holding time.
void AddExcursions(LedgerTrade& record, const PlayedSeries& series) {
  for (LedgerTradeEnd* const end : {&record.entry, &record.exit}) {
    if (!HasBar(*end, series)) end->bar.reset();
  }
  const auto& entry = record.entry.bar;
  const auto& exit = record.exit.bar;
  if (!entry || !exit || *exit < *entry) return;
  const auto farthest = [&](bool up) {
    return FarthestFrom(record.entry.price, up, series, *entry, *exit);
  };
  const Extreme adverse = farthest(!record.is_long);
  const Extreme favourable = farthest(record.is_long);
  record.adverse = adverse.distance;
  record.adverse_bar = adverse.bar;
  record.favourable = favourable.distance;
  record.favourable_bar = favourable.bar;
}

void AddBars(LedgerTrades& trades, const RunRecord& record, const PlayedSeries& series) {
  const int last = static_cast<int>(series.closes.size()) - 1;
  int first = series.first;
  int newest = std::max(series.newest, trades.newest_shown);
  for (const RunOrder& order : record.orders) {
    first = std::min(first, order.bar.value_or(first));
    newest = std::max(newest, order.bar.value_or(newest));
  }
  first = std::clamp(first, 0, last);
  newest = std::clamp(newest, first, last);
  trades.first_bar = first;
  trades.first_day = series.dates[static_cast<std::size_t>(first)];
  trades.last_day = series.dates[static_cast<std::size_t>(newest)];
  trades.closes.assign(series.closes.begin() + first, series.closes.begin() + newest + 1);
}

}  // namespace

bool HasBarsOfOrders(const RunRecord& record, const PlayedSeries& series) {
  constexpr double kTwoDecimals = 0.00501;  // of an order whose close was not recorded
  return std::ranges::all_of(record.orders, [&](const RunOrder& order) {
    if (!order.bar) return false;
    const auto bar = static_cast<std::size_t>(*order.bar);
    if (*order.bar < 0 || bar >= series.closes.size()) return false;
    if (!order.iso_date.empty() && order.iso_date != IsoDate(series.dates[bar])) return false;
    const double close = ReadableDouble(series.closes[bar]);
    return order.close ? *order.close == close : std::abs(order.price - close) < kTwoDecimals;
  });
}

LedgerTrade RecordTrade(const Trade& trade, const PlayedSeries* series) {
  const OpenLot& lot = trade.lot;
  const TradeEnd entry = lot.entry.value_or(TradeEnd());
  LedgerTrade record{.entry = EndOfRecord(entry),
                     .exit = EndOfRecord(trade.exit),
                     .is_long = lot.is_long,
                     .quantity = lot.quantity,
                     .entry_share = lot.entered > 0 ? lot.quantity / lot.entered : 1,
                     .wiped = trade.wiped,
                     .look_ahead = entry.look_ahead || trade.exit.look_ahead,
                     .money_per_point = trade.money_per_point,
                     .money = trade.money,
                     .costs = (entry.costs + trade.exit.costs) * lot.quantity};
  if (series != nullptr) AddExcursions(record, *series);
  return record;
}

LedgerTrades RecordTrades(const std::vector<RunRecord>& account, const LedgerScopeState& state,
                          const PlayedSeries* series) {
  LedgerTrades trades{.scope = state.scope,
                      .orders = state.orders,
                      .newest_shown = state.newest_shown,
                      .closes = {},
                      .trades = {}};
  if (series != nullptr) AddBars(trades, account.back(), *series);
  for (const Trade& trade : ListTrades(account).trades) {
    const LedgerTrade& record = trades.trades.emplace_back(RecordTrade(trade, series));
    if (!trades.closes.empty()) continue;
    const std::int32_t entered = record.entry.day != 0 ? record.entry.day : record.exit.day;
    if (trades.first_day == 0 || entered < trades.first_day) trades.first_day = entered;
    trades.last_day = std::max(trades.last_day, record.exit.day);
  }
  return trades;
}

}  // namespace velumar
