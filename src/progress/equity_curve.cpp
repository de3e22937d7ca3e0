#include "progress/equity_curve.h"

#include <algorithm>
#include <chrono>
#include <cmath>

#include "base/dates.h"

namespace velumar {

namespace {

constexpr int kWeekdays = 5;

// Monday to Friday from 1 January 1970, a Thursday, to before the day.
std::int64_t WeekdaysBefore(std::int64_t day) {
  const std::chrono::days since_monday(day + 3);
  const auto weeks = std::chrono::floor<std::chrono::weeks>(since_monday);
  const std::int64_t rest = (since_monday - weeks).count();
  return std::int64_t{weeks.count()} * kWeekdays + std::min<std::int64_t>(rest, kWeekdays);
}

double YearsOf(const PlayedSession& session) {
  if (!IsRealDate(session.first_day) || !IsRealDate(session.last_day)) return 1 / kWeekdaysPerYear;
  const std::int64_t weekdays = WeekdaysBefore(DayNumber(session.last_day) + 1) -
                                WeekdaysBefore(DayNumber(session.first_day));
  return static_cast<double>(std::max<std::int64_t>(weekdays, 1)) / kWeekdaysPerYear;
}

// To a millionth, so that an account that is as high as before is not below by a rounding error.
// Numbers as large as `kWhole` have no fraction, so adding it rounds, without the call that
// std::round is. Money above two billion has no millionths to lose.
double WithoutNoise(double money) {
  constexpr double kParts = 1e6;
  constexpr double kWhole = 0x1.8p52;
  return (money * kParts + kWhole - kWhole) / kParts;
}

// The account of one session as changes from bar to bar.
class SessionBars {
 public:
  SessionBars(const PlayedSession& session, std::size_t trades)
      : session_(session),
        count_(session.closes.empty() ? trades : session.closes.size()),
        steps_(count_),
        positions_(count_ + 1),
        open_(count_ + 1) {}

  std::size_t Count() const { return count_; }

  // Returns the bar from which the trade's net result is complete.
  std::size_t Add(const PlayedTrade& trade) {
    if (session_.closes.empty()) {
      steps_[added_] += trade.Net();
      return added_++;
    }
    const int entry = trade.entry_bar - session_.first_bar;
    const int exit = trade.exit_bar - session_.first_bar;
    const bool exit_known = exit >= 0 && static_cast<std::size_t>(exit) < count_;
    const auto end = exit_known ? static_cast<std::size_t>(exit) : count_ - 1;
    double marked = 0;
    if (exit_known && entry >= 0 && entry < exit) {
      const auto start = static_cast<std::size_t>(entry);
      const double position = (trade.is_long ? 1 : -1) * trade.quantity * trade.money_per_point;
      positions_[start + 1] += position;
      positions_[end + 1] -= position;
      ++open_[start + 1];
      --open_[end + 1];
      marked = position * (Close(end) - Close(start));
    }
    steps_[end] += trade.Net() - marked;
    return end;
  }

  // Continues the curve and the account.
  void AppendTo(EquityCurve& curve, double& account) const {
    double position = 0;
    int open = 0;
    for (std::size_t bar = 0; bar < count_; ++bar) {
      position += positions_[bar];
      open += open_[bar];
      if (open == 0) position = 0;  // no rounding error of what was closed
      const double marked = open == 0 ? 0 : position * (Close(bar) - Close(bar - 1));
      account += marked + steps_[bar];
      curve.equity.push_back(WithoutNoise(account));
      curve.in_market.push_back(open > 0 ? 1 : 0);
    }
  }

 private:
  double Close(std::size_t bar) const { return session_.closes[bar]; }

  const PlayedSession& session_;
  std::size_t count_;
  std::size_t added_ = 0;
  std::vector<double> steps_;      // money at the close of a bar
  std::vector<double> positions_;  // money per point that begins with a bar, or ends: negative
  std::vector<int> open_;          // trades, likewise
};

}  // namespace

EquityCurve ChainEquity(const Played& played, std::span<const std::int32_t> selection) {
  EquityCurve curve;
  curve.completed.reserve(selection.size());
  const std::vector<SelectedSession> sessions = BySession(played, selection);
  std::size_t bars_of_all = selection.size();
  for (const SelectedSession& selected : sessions) {
    bars_of_all += played.SessionAt(selected.session).closes.size();
  }
  curve.equity.reserve(bars_of_all);
  curve.in_market.reserve(bars_of_all);
  double account = 0;
  for (const SelectedSession& selected : sessions) {
    const PlayedSession& session = played.SessionAt(selected.session);
    if (curve.parts.empty()) account = curve.starting_money = session.starting_money;
    SessionBars bars(session, selected.trades.size());
    const auto first = static_cast<std::int32_t>(curve.equity.size());
    for (const std::int32_t place : selected.trades) {
      const std::size_t bar = bars.Add(played.TradeAt(place));
      curve.completed.push_back(first + static_cast<std::int32_t>(bar));
    }
    bars.AppendTo(curve, account);
    curve.parts.push_back({selected.session, first, static_cast<std::int32_t>(bars.Count()),
                           static_cast<std::int32_t>(selected.trades.size()), YearsOf(session)});
  }
  return curve;
}

std::vector<double> DrawdownOf(const EquityCurve& curve) {
  std::vector<double> drawdown;
  drawdown.reserve(curve.equity.size());
  double peak = curve.starting_money;
  for (const double equity : curve.equity) {
    peak = std::max(peak, equity);
    drawdown.push_back(peak - equity);
  }
  return drawdown;
}

}  // namespace velumar
