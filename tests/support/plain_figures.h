#pragma once

#include <algorithm>
#include <cmath>
#include <map>
#include <string>

#include "progress/played.h"

namespace velumar {

// The figures over all trades a second time, as a patient person with a sheet of paper computes
// them: each bar and each fall from scratch, from the definitions alone.
class PlainFigures {
 public:
  explicit PlainFigures(const Played& played) : played_(played) {
    for (std::size_t i = 0; i < played.sessions.size(); ++i) Append(static_cast<std::int32_t>(i));
  }

  const std::vector<double>& Equity() const { return equity_; }

  std::map<std::string, double> Compute() const {
    std::map<std::string, double> figures;
    double wins = 0, losses = 0, won = 0, lost = 0, costs = 0, multiples = 0, planned = 0, held = 0;
    for (const PlayedTrade& trade : played_.trades) {
      const double net = trade.money - trade.costs;
      if (net > 0) ++wins, won += net;
      if (net < 0) ++losses, lost -= net;
      costs += trade.costs;
      held += trade.exit_bar - trade.entry_bar;
      if (trade.risk > 0) ++planned, multiples += trade.money / trade.risk;
    }
    const auto trades = static_cast<double>(played_.trades.size());
    figures["Win rate"] = wins / trades;
    figures["Expectancy"] = (won - lost) / trades;
    figures["Expectancy in R"] = multiples / planned;
    figures["Profit factor"] = won / lost;
    figures["Payoff ratio"] = won / wins * losses / lost;
    figures["Average win"] = won / wins;
    figures["Average loss"] = -lost / losses;
    figures["Time in trade"] = held / trades;
    figures["Costs"] = costs;
    figures["Net profit"] = won - lost;
    figures["Return"] = (won - lost) / start_;
    AddBars(figures);
    return figures;
  }

 private:
  void Append(std::int32_t place) {
    const PlayedSession& session = played_.sessions.at(place);
    if (equity_.empty()) start_ = session.starting_money;
    const double before = equity_.empty() ? start_ : equity_.back();
    for (int bar = 0; bar < static_cast<int>(session.closes.size()); ++bar) {
      double equity = before;
      bool holding = false;
      for (const PlayedTrade& trade : played_.trades) {
        if (trade.session != place) continue;
        const int entry = trade.entry_bar - session.first_bar;
        const int exit = trade.exit_bar - session.first_bar;
        if (bar >= exit) {
          equity += trade.money - trade.costs;
        } else if (bar > entry) {
          const double points = session.closes.at(bar) - session.closes.at(entry);
          equity += (trade.is_long ? points : -points) * trade.quantity * trade.money_per_point;
        }
        holding = holding || (bar > entry && bar <= exit);
        if (bar > entry && bar <= exit) {
          value_held_ += trade.quantity * trade.entry_price * trade.money_per_point;
        }
      }
      equity_.push_back(equity);
      in_market_ += holding ? 1 : 0;
      accounts_ += session.starting_money;
    }
    years_ += 6 / (365.25 * 5 / 7);  // Monday to Monday
  }

  void AddBars(std::map<std::string, double>& figures) const {
    const auto bars = static_cast<double>(equity_.size());
    double sum = 0, fall = 0, share = 0, squares = 0, longest = 0, run = 0, peak = start_;
    std::vector<double> returns;
    for (std::size_t i = 0; i < equity_.size(); ++i) {
      returns.push_back(equity_[i] / (i == 0 ? start_ : equity_[i - 1]) - 1);
      sum += returns.back();
      peak = std::max(peak, equity_[i]);
      const double below = peak - equity_[i] < 1e-7 ? 0 : peak - equity_[i];
      fall = std::max(fall, below);
      share = std::max(share, below / peak);
      squares += below / peak * below / peak;
      run = below > 0 ? run + 1 : 0;
      longest = std::max(longest, run);
    }
    double around_mean = 0, losses = 0;
    for (const double value : returns) {
      around_mean += std::pow(value - sum / bars, 2);
      losses += value < 0 ? value * value : 0;
    }
    const double yearly = bars / years_;
    const double deviation = std::sqrt(around_mean / (bars - 1));
    figures["Time in market"] = in_market_ / bars;
    figures["Exposure"] = value_held_ / accounts_;
    figures["CAGR"] = std::pow(equity_.back() / start_, 1 / years_) - 1;
    figures["Volatility"] = deviation * std::sqrt(yearly);
    figures["Sharpe ratio"] = sum / bars / deviation * std::sqrt(yearly);
    figures["Sortino ratio"] = sum / bars / std::sqrt(losses / bars) * std::sqrt(yearly);
    figures["Max drawdown"] = fall;
    figures["Max drawdown in percent"] = share;
    figures["Longest drawdown"] = longest;
    figures["Recovery factor"] = figures["Net profit"] / fall;
    figures["Ulcer index"] = std::sqrt(squares / bars);
    figures["MAR ratio"] = figures["CAGR"] / share;
  }

  const Played& played_;
  double start_ = 0;
  std::vector<double> equity_;
  double years_ = 0;
  double in_market_ = 0;
  double value_held_ = 0;
  double accounts_ = 0;
};

}  // namespace velumar
