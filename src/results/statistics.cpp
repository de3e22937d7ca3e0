#include "results/statistics.h"

#include <algorithm>
#include <numeric>
#include <optional>

#include "results/figure_texts.h"
#include "results/trade_list.h"

namespace velumar {

namespace {

// Totals of trades, in money before costs. A trade without P/L is only counted.
struct TradeSums {
  int trades = 0;
  int without_result = 0;
  int wins = 0;
  int losses = 0;
  double won = 0;
  double lost = 0;  // negative
  double largest_win = 0;
  double largest_loss = 0;
  int with_risk = 0;
  double multiples = 0;  // of what was risked, summed
  // In the order the trades were closed. A break-even trade ends both streaks.
  int most_wins_in_a_row = 0;
  int most_losses_in_a_row = 0;

  int WithResult() const { return trades - without_result; }
};

// Totals of a run's orders. The optional ones are empty if an order has no detail.
struct OrderSums {
  int orders = 0;
  double commission = 0;
  std::optional<double> vat = 0;
  std::optional<int> look_ahead = 0;
  std::optional<double> money;  // realised, after the last order
};

// The largest fall of the realised money from its peak.
struct Drawdown {
  double money = 0;
  std::optional<double> share;  // of the peak; empty if the peak was not above 0
  // Date and time of the peak and the low. `from` is "start" if the starting money was the peak.
  // Both are empty if the money never fell.
  std::string from;
  std::string to;
};

// How long and with how much money the trader was in the market, over the bars from the lowest one
// with an order to the highest.
struct MarketTime {
  double held = 0;             // bars with a holding, as a share of all
  double average_holding = 0;  // quantity times entry price, per bar
};

struct BarRange {
  int first = 0;
  int end = 0;  // one after the last bar that counts
};

std::optional<BarRange> BarsWithOrders(const RunRecord& run) {
  std::optional<BarRange> bars;
  for (const RunOrder& order : run.orders) {
    if (!order.bar) return std::nullopt;
    if (!bars) bars = BarRange{*order.bar, *order.bar};
    bars->first = std::min(bars->first, *order.bar);
    bars->end = std::max(bars->end, *order.bar);
  }
  return bars && bars->end > bars->first ? bars : std::nullopt;
}

TradeSums SumTrades(const std::vector<Trade>& trades) {
  TradeSums sums;
  int wins_in_a_row = 0;
  int losses_in_a_row = 0;
  for (const Trade& trade : trades) {
    ++sums.trades;
    if (!trade.money) {
      ++sums.without_result;
      continue;
    }
    const double money = *trade.money;
    sums.with_risk += trade.r ? 1 : 0;
    sums.multiples += trade.r.value_or(0);
    wins_in_a_row = money > 0 ? wins_in_a_row + 1 : 0;
    losses_in_a_row = money < 0 ? losses_in_a_row + 1 : 0;
    sums.wins += money > 0 ? 1 : 0;
    sums.losses += money < 0 ? 1 : 0;
    sums.won += std::max(money, 0.0);
    sums.lost += std::min(money, 0.0);
    sums.largest_win = std::max(sums.largest_win, money);
    sums.largest_loss = std::min(sums.largest_loss, money);
    sums.most_wins_in_a_row = std::max(sums.most_wins_in_a_row, wins_in_a_row);
    sums.most_losses_in_a_row = std::max(sums.most_losses_in_a_row, losses_in_a_row);
  }
  return sums;
}

OrderSums SumOrders(const RunRecord& run) {
  OrderSums sums;
  for (const RunOrder& order : run.orders) {
    if (order.kind == RunOrder::Kind::kWiped) continue;
    ++sums.orders;
    sums.commission += order.commission;
    sums.vat = sums.vat && order.vat ? std::optional(*sums.vat + *order.vat) : std::nullopt;
    const auto look_ahead = order.LookAhead();
    sums.look_ahead = sums.look_ahead && look_ahead
                          ? std::optional(*sums.look_ahead + (*look_ahead ? 1 : 0))
                          : std::nullopt;
    sums.money = order.money;
  }
  return sums;
}

// Starts from the starting money, so a loss of the first trade counts. Empty if the run has no
// orders or its starting money was not recorded.
std::optional<Drawdown> MaxDrawdown(const RunRecord& run) {
  if (!run.began || run.orders.empty()) return std::nullopt;
  double peak = run.began->starting_money;
  std::string peak_moment = "start";
  Drawdown deepest;
  for (const RunOrder& order : run.orders) {
    if (order.kind == RunOrder::Kind::kWiped) continue;
    const std::string moment = order.date + " " + order.time;
    if (order.money > peak) {
      peak = order.money;
      peak_moment = moment;
    }
    if (peak - order.money > deepest.money) {
      const double fall = peak - order.money;
      deepest = {fall, peak > 0 ? std::optional(fall / peak) : std::nullopt, peak_moment, moment};
    }
  }
  return deepest;
}

// Empty if the orders are all on one bar, or if a bar or an entry was not recorded. A quantity that
// was closed on the bar of its entry, or on an earlier one after a step back, was held for no bars.
std::optional<MarketTime> TimeInMarket(const RunRecord& run, const TradeList& list) {
  const auto bars = BarsWithOrders(run);
  if (!bars) return std::nullopt;
  // The value of all holdings, bar by bar.
  std::vector<double> held(static_cast<std::size_t>(bars->end - bars->first));
  bool complete = true;
  const auto add = [&](const OpenLot& lot, int until) {
    complete = complete && lot.entry && lot.entry->bar;
    if (!complete) return;
    for (int bar = std::max(*lot.entry->bar, bars->first); bar < until; ++bar) {
      held[static_cast<std::size_t>(bar - bars->first)] += lot.quantity * lot.entry->price;
    }
  };
  for (const Trade& trade : list.trades) add(trade.lot, trade.exit.bar.value_or(bars->first));
  for (const OpenLot& lot : list.open) add(lot, bars->end);
  if (!complete) return std::nullopt;
  const auto with_holding = std::ranges::count_if(held, [](double value) { return value > 0; });
  const auto count = static_cast<double>(held.size());
  return MarketTime{.held = static_cast<double>(with_holding) / count,
                    .average_holding = std::accumulate(held.begin(), held.end(), 0.0) / count};
}

using Figure = std::optional<double>;

Figure Ratio(Figure part, Figure whole) {
  return part && whole && *whole != 0 ? Figure(*part / *whole) : std::nullopt;
}

// The figure, if there is anything to compute it from.
Figure Where(bool counted, double value) { return counted ? Figure(value) : std::nullopt; }

std::string Count(int count) { return std::to_string(count); }

void AddTrades(const TradeSums& sums, std::vector<Statistic>& out) {
  const Figure average_win = Ratio(sums.won, sums.wins);
  const Figure average_loss = Ratio(sums.lost, sums.losses);
  const bool any = sums.WithResult() > 0;
  out = {
      {"Trades", Count(sums.trades),
       "Number of closed quantities: first in, first out within a side. An offset that closes "
       "parts of two entries makes two trades."},
      {"Trades without P/L", Count(sums.without_result),
       "Trades closed by an offset of more than was held, which moves no money, and trades whose "
       "entry is not in the ledger. They count only for time in market and exposure."},
      {"Win rate", PercentText(Ratio(sums.wins, sums.WithResult())),
       "Winning trades / trades with P/L."},
      {"Average win", MoneyText(average_win),
       "Profit of the winning trades / their number, before costs."},
      {"Average loss", MoneyText(average_loss),
       "Loss of the losing trades / their number, before costs."},
      {"Payoff ratio", MoneyText(average_loss ? Ratio(average_win, -*average_loss) : std::nullopt),
       "Average win / average loss, both without their sign."},
      {"Profit factor", MoneyText(Ratio(sums.won, -sums.lost)),
       "Profit of the winning trades / loss of the losing trades, both without their sign."},
      {"Expectancy", MoneyText(Ratio(sums.won + sums.lost, sums.WithResult())),
       "(Profit of the winning trades - loss of the losing trades) / trades with P/L, before "
       "costs."},
      {"Largest win", MoneyText(Where(sums.wins > 0, sums.largest_win)),
       "The largest profit of one trade, before costs."},
      {"Largest loss", MoneyText(Where(sums.losses > 0, sums.largest_loss)),
       "The largest loss of one trade, before costs."},
      {"Max consecutive wins", any ? Count(sums.most_wins_in_a_row) : kNoFigure,
       "The most winning trades in a row, in the order they were closed. A break-even trade ends "
       "the streak; trades without P/L are skipped."},
      {"Max consecutive losses", any ? Count(sums.most_losses_in_a_row) : kNoFigure,
       "The most losing trades in a row, in the order they were closed. A break-even trade ends "
       "the streak; trades without P/L are skipped."}};
  if (sums.with_risk == 0) return;
  out.push_back({"Average R", MoneyText(sums.multiples / sums.with_risk),
                 "Result of a trade, before costs / what its plan risked at the entry, averaged "
                 "over the trades whose plan had a stop."});
}

void AddDrawdown(const std::optional<Drawdown>& drawdown, std::vector<Statistic>& out) {
  const bool fell = drawdown && drawdown->money > 0;
  out.push_back({"Max drawdown", MoneyText(drawdown ? Figure(drawdown->money) : std::nullopt),
                 "The largest fall of the realised money from its peak, order by order. The "
                 "starting money is the first peak."});
  out.push_back({"Max drawdown in percent",
                 PercentText(fell ? drawdown->share : Where(drawdown.has_value(), 0)),
                 "Max drawdown / the peak it fell from."});
  out.push_back({"Drawdown period", fell ? drawdown->from + " to " + drawdown->to : kNoFigure,
                 "From the order at the peak before the max drawdown, or the start, to the order "
                 "at the low."});
}

void AddMarketTime(const RunRecord& run, const std::optional<MarketTime>& time,
                   std::vector<Statistic>& out) {
  Figure exposure;
  if (time && run.began && run.began->starting_money > 0) {
    exposure = time->average_holding * run.began->money_per_point / run.began->starting_money;
  }
  out.push_back({"Time in market", PercentText(time ? Figure(time->held) : std::nullopt),
                 "Bars with a holding / bars from the first one with an order to the last."});
  out.push_back({"Exposure", PercentText(exposure),
                 "Quantity held x entry price x money per point, averaged over the bars from the "
                 "first one with an order to the last / starting money."});
}

void AddMoney(const RunRecord& run, const OrderSums& sums, std::vector<Statistic>& out) {
  Figure gained;
  Figure share;
  if (run.began && sums.money) {
    gained = *sums.money - run.began->starting_money;
    if (run.began->starting_money > 0) share = *gained / run.began->starting_money;
  }
  const Figure net =
      gained && sums.vat ? Figure(*gained - sums.commission - *sums.vat) : std::nullopt;
  out.push_back({"Return", PercentText(share),
                 "(Realised money after the last order - starting money) / starting money, before "
                 "costs."});
  out.push_back(
      {"Commission", MoneyText(sums.commission), "Commission of all orders, entries and offsets."});
  out.push_back({"VAT", MoneyText(sums.vat), "VAT on the commission of all orders."});
  out.push_back({"Net profit", MoneyText(net),
                 "Realised money after the last order - starting money - commission - VAT."});
  out.push_back(
      {"Look-ahead orders",
       sums.look_ahead ? Count(*sums.look_ahead) + " of " + Count(sums.orders) : kNoFigure,
       "Orders placed at a bar after later bars had already been shown."});
}

}  // namespace

std::vector<Statistic> RunStatistics(const std::vector<RunRecord>& account) {
  const RunRecord& run = account.back();
  const TradeList list = ListTrades(account);
  std::vector<Statistic> statistics;
  AddTrades(SumTrades(list.trades), statistics);
  AddDrawdown(MaxDrawdown(run), statistics);
  AddMarketTime(run, TimeInMarket(run, list), statistics);
  AddMoney(run, SumOrders(run), statistics);
  return statistics;
}

}  // namespace velumar
