#include "results/statistics.h"

#include "results/drawdown.h"
#include "results/figure_texts.h"
#include "results/market_time.h"
#include "results/trade_sums.h"

namespace velumar {

namespace {

using Figure = std::optional<double>;

Figure Ratio(double part, double whole) { return whole == 0 ? std::nullopt : Figure(part / whole); }

// A figure that means nothing where nothing was counted.
Figure Where(bool counted, double value) { return counted ? Figure(value) : std::nullopt; }

std::string Count(int count) { return std::to_string(count); }

// What the orders of a run come to; costs of a row without a detail are unknown.
struct OrderSums {
  int orders = 0;
  double commission = 0;
  Figure vat = 0;
  std::optional<int> hindsight = 0;
  Figure money;  // realised, after the order placed last
};

OrderSums SumOrders(const RunRecord& run) {
  OrderSums sums;
  for (const RunOrder& order : run.orders) {
    if (order.kind == RunOrder::Kind::kWiped) continue;
    ++sums.orders;
    sums.commission += order.commission;
    sums.vat = sums.vat && order.vat ? Figure(*sums.vat + *order.vat) : std::nullopt;
    const auto hindsight = order.Hindsight();
    sums.hindsight = sums.hindsight && hindsight
                         ? std::optional(*sums.hindsight + (*hindsight ? 1 : 0))
                         : std::nullopt;
    sums.money = order.money;
  }
  return sums;
}

void AddTradeStatistics(const TradeSums& sums, std::vector<Statistic>& out) {
  const Figure average_win = Ratio(sums.won, sums.wins);
  const Figure average_loss = Ratio(sums.lost, sums.losses);
  const bool any = sums.WithResult() > 0;
  out.push_back({"Trades", Count(sums.trades),
                 "Number of closed quantities: first in, first out within a side. An offset that "
                 "closes parts of two entries makes two trades."});
  out.push_back({"Closed without a result", Count(sums.without_result),
                 "Trades that an offset of more than was held closed, which moves no money, or "
                 "whose entry isn't in the ledger. They count only in the time in the market and "
                 "in exposure."});
  out.push_back({"Win rate", PercentText(Ratio(sums.wins, sums.WithResult())),
                 "Trades that gained money / trades with a result."});
  out.push_back({"Average win", MoneyText(average_win),
                 "Money gained by the trades that gained / their number, before costs."});
  out.push_back({"Average loss", MoneyText(average_loss),
                 "Money lost by the trades that lost / their number, before costs."});
  out.push_back(
      {"Payoff",
       MoneyText(average_win && average_loss ? Ratio(*average_win, -*average_loss) : std::nullopt),
       "Average win / average loss without its sign."});
  out.push_back({"Profit factor", MoneyText(Ratio(sums.won, -sums.lost)),
                 "Money gained by the trades that gained / money lost by those that lost."});
  out.push_back({"Expectancy", MoneyText(Ratio(sums.won + sums.lost, sums.WithResult())),
                 "Money gained less money lost / trades with a result, before costs."});
  out.push_back({"Largest win", MoneyText(Where(sums.wins > 0, sums.largest_win)),
                 "The most money that one trade gained, before costs."});
  out.push_back({"Largest loss", MoneyText(Where(sums.losses > 0, sums.largest_loss)),
                 "The most money that one trade lost, before costs."});
  out.push_back({"Longest run of wins", any ? Count(sums.longest_wins) : kNoFigure,
                 "Most trades that gained one after the other, as they were closed. A trade "
                 "without gain or loss ends a run; one without a result is passed over."});
  out.push_back({"Longest run of losses", any ? Count(sums.longest_losses) : kNoFigure,
                 "Most trades that lost one after the other, as they were closed. A trade "
                 "without gain or loss ends a run; one without a result is passed over."});
}

void AddDrawdown(const std::optional<Drawdown>& drawdown, std::vector<Statistic>& out) {
  const bool fell = drawdown && drawdown->money > 0;
  out.push_back({"Maximum drawdown", MoneyText(drawdown ? Figure(drawdown->money) : std::nullopt),
                 "The deepest fall of the realised money below the most it had reached, from the "
                 "starting money on and as the orders were placed."});
  out.push_back({"Maximum drawdown in percent",
                 PercentText(fell ? drawdown->share : Where(drawdown.has_value(), 0)),
                 "Maximum drawdown / the money it fell from."});
  out.push_back({"Dates of the drawdown", fell ? drawdown->from + " to " + drawdown->to : kNoFigure,
                 "The order after which the money stood highest before the maximum drawdown, or "
                 "the start, and the order after which it stood lowest."});
}

void AddMarketTime(const RunRecord& run, const std::optional<MarketTime>& time,
                   std::vector<Statistic>& out) {
  Figure exposure;
  if (time && run.began && run.began->starting_money > 0) {
    exposure = time->average_holding * run.began->money_per_point / run.began->starting_money;
  }
  out.push_back({"Time in the market", PercentText(time ? Figure(time->held) : std::nullopt),
                 "Bars with a holding / bars from the first bar of an order to the last one."});
  out.push_back({"Exposure", PercentText(exposure),
                 "Quantity held x entry price x money per point, averaged over the bars from the "
                 "first bar of an order to the last one / starting money."});
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
  out.push_back({"Commission", MoneyText(sums.commission),
                 "Sum of the commission of all orders, entries and offsets."});
  out.push_back({"VAT", MoneyText(sums.vat), "Sum of the VAT on the commission of all orders."});
  out.push_back({"Net after both", MoneyText(net),
                 "Realised money after the last order - starting money - commission - VAT."});
}

void AddHindsight(const OrderSums& sums, std::vector<Statistic>& out) {
  out.push_back({"Hindsight",
                 sums.hindsight ? Count(*sums.hindsight) + " of " + Count(sums.orders) +
                                      " orders with hindsight"
                                : kNoFigure,
                 "Orders placed at a bar when later bars had been shown already in the run."});
}

}  // namespace

std::vector<Statistic> RunStatistics(const std::vector<RunRecord>& account) {
  const RunRecord& run = account.back();
  const TradeList list = ListTrades(account);
  const OrderSums sums = SumOrders(run);
  std::vector<Statistic> statistics;
  AddTradeStatistics(SumTrades(list.trades), statistics);
  AddDrawdown(MaximumDrawdown(run), statistics);
  AddMarketTime(run, TimeInMarket(run, list), statistics);
  AddMoney(run, sums, statistics);
  AddHindsight(sums, statistics);
  return statistics;
}

}  // namespace velumar
