#include "results/statistics.h"

#include "results/figure_texts.h"
#include "results/run_measures.h"

namespace velumar {

namespace {

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
       "Orders placed at a bar after later bars had already been shown in the run."});
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
