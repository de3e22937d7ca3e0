#include "results/trade_record.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <map>
#include <string>
#include <utility>

#include "base/dates.h"
#include "base/decimal.h"
#include "results/trade_list.h"

namespace velumar {

namespace {

using OrdersByKey = std::map<LedgerOrderKey, const RunOrder*>;

OrdersByKey OrdersOf(const std::vector<RunRecord>& account) {
  OrdersByKey orders;
  for (const RunRecord& record : account) {
    for (const RunOrder& order : record.orders) {
      if (order.key.place != 0) orders.emplace(order.key, &order);
    }
  }
  return orders;
}

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
    const double distance =
        up ? ReadableDouble(series.highs[at]) - price : price - ReadableDouble(series.lows[at]);
    if (distance > extreme.distance) extreme = {distance, bar};
  }
  return extreme;
}

class Recorder {
 public:
  Recorder(const std::vector<RunRecord>& account, const PlayedSeries* series)
      : orders_(OrdersOf(account)), series_(series) {}

  // A holding may have been entered in the bars of an earlier run, and a run may be continued on
  // other data: a bar that is not one of the series has no excursions and no holding time.
  LedgerTrade Record(const Trade& trade) const {
    LedgerTrade record;
    record.is_long = trade.lot.is_long;
    record.quantity = trade.lot.quantity;
    record.wiped = trade.wiped;
    record.money = trade.money;
    if (trade.lot.entry) AddEntry(record, *trade.lot.entry);
    AddExit(record, trade.exit);
    if (series_ == nullptr) return record;
    if (!HasBar(record.entry_bar, record.entry_day)) record.entry_bar.reset();
    if (!HasBar(record.exit_bar, record.exit_day)) record.exit_bar.reset();
    AddExcursions(record);
    return record;
  }

 private:
  bool HasBar(std::optional<int> bar, std::int32_t day) const {
    const auto at = static_cast<std::size_t>(bar.value_or(-1));
    return at < series_->dates.size() && (day == 0 || series_->dates[at] == day);
  }

  const RunOrder* OrderOf(const LedgerOrderKey& key) const {
    const auto found = orders_.find(key);
    return found == orders_.end() ? nullptr : found->second;
  }

  // The costs of the part of an order that belongs to the trade.
  static double CostsOf(const RunOrder& order, double share) {
    return (order.commission + order.vat.value_or(0)) * share;
  }

  static double ShareOf(const RunOrder& order, double quantity) {
    const double ordered = order.quantity.value_or(quantity);
    return ordered > 0 ? std::min(1.0, quantity / ordered) : 1;
  }

  void AddEntry(LedgerTrade& record, const TradeEnd& entry) const {
    record.entry = entry.key;
    record.entry_day = DayOf(entry);
    record.entry_time = TimeOf(entry);
    record.entry_bar = entry.bar;
    record.entry_price = entry.price;
    const RunOrder* const order = OrderOf(entry.key);
    if (order == nullptr) return;
    record.entry_share = ShareOf(*order, record.quantity);
    record.costs += CostsOf(*order, record.entry_share);
    record.look_ahead = order->LookAhead().value_or(false);
  }

  void AddExit(LedgerTrade& record, const TradeEnd& exit) const {
    record.exit = exit.key;
    record.exit_day = DayOf(exit);
    record.exit_time = TimeOf(exit);
    record.exit_bar = exit.bar;
    record.exit_price = exit.price;
    const RunOrder* const order = OrderOf(exit.key);
    if (order == nullptr) return;
    record.costs += CostsOf(*order, ShareOf(*order, record.quantity));
    record.look_ahead = record.look_ahead || order->LookAhead().value_or(false);
    record.money_per_point = order->money_per_point;
  }

  void AddExcursions(LedgerTrade& record) const {
    if (!record.entry_bar || !record.exit_bar || *record.exit_bar < *record.entry_bar) return;
    const auto farthest = [&](bool up) {
      return FarthestFrom(record.entry_price, up, *series_, *record.entry_bar, *record.exit_bar);
    };
    const Extreme adverse = farthest(!record.is_long);
    const Extreme favourable = farthest(record.is_long);
    record.adverse = adverse.distance;
    record.adverse_bar = adverse.bar;
    record.favourable = favourable.distance;
    record.favourable_bar = favourable.bar;
  }

  OrdersByKey orders_;
  const PlayedSeries* series_;
};

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

LedgerTrades RecordTrades(const std::vector<RunRecord>& account, const LedgerScopeState& state,
                          const PlayedSeries* series) {
  LedgerTrades trades{.scope = state.scope,
                      .orders = state.orders,
                      .newest_shown = state.newest_shown,
                      .closes = {},
                      .trades = {}};
  if (series != nullptr) AddBars(trades, account.back(), *series);
  const Recorder recorder(account, series);
  for (const Trade& trade : ListTrades(account).trades) {
    const LedgerTrade& record = trades.trades.emplace_back(recorder.Record(trade));
    if (!trades.closes.empty()) continue;
    const std::int32_t entered = record.entry_day != 0 ? record.entry_day : record.exit_day;
    if (trades.first_day == 0 || entered < trades.first_day) trades.first_day = entered;
    trades.last_day = std::max(trades.last_day, record.exit_day);
  }
  return trades;
}

}  // namespace velumar
