#include "progress/ruin.h"

#include <algorithm>
#include <vector>

#include "progress/progress_figures.h"

namespace velumar {

namespace {

constexpr int kHalvings = 14;  // of the interval of sizes: to a thousandth

// The results of trades as shares of the account, in the pieces that are drawn as a whole.
struct ShareHistory {
  std::vector<double> results;
  std::vector<std::uint32_t> pieces;  // where each begins; the last one is the end
  double risked = 0;                  // shares, summed over the trades with a plan
  int with_risk = 0;
};

ShareHistory HistoryOf(const Played& played, std::span<const std::int32_t> selection) {
  ShareHistory history;
  const auto sessions = BySession(played, selection);
  const bool whole = sessions.size() >= kEnoughSessions;
  const auto begin_piece = [&] {
    const auto at = static_cast<std::uint32_t>(history.results.size());
    if (history.pieces.empty() || history.pieces.back() < at) history.pieces.push_back(at);
  };
  for (const SelectedSession& selected : sessions) {
    double account = played.SessionAt(selected.session).starting_money;
    begin_piece();
    for (const std::int32_t place : selected.trades) {
      const PlayedTrade& trade = played.TradeAt(place);
      if (account <= 0) break;
      if (!whole) begin_piece();
      history.results.push_back(trade.Net() / account);
      if (trade.risk > 0) {
        history.risked += trade.risk / account;
        ++history.with_risk;
      }
      account += trade.Net();
    }
  }
  begin_piece();
  return history;
}

// Account after account of kTradesAhead drawn results, one after the other.
using Futures = std::vector<float>;

Futures DrawFutures(const ShareHistory& history, const RoundOptions& options) {
  Futures futures(static_cast<std::size_t>(options.count) * kTradesAhead);
  const auto pieces = static_cast<std::uint32_t>(history.pieces.size() - 1);
  RunRounds(options, [&](int first, int end, RandomSource& random) {
    for (int round = first; round < end; ++round) {
      float* const future = &futures[static_cast<std::size_t>(round) * kTradesAhead];
      for (int filled = 0; filled < kTradesAhead;) {
        const std::uint32_t piece = random.Below(pieces);
        for (std::uint32_t i = history.pieces[piece];
             i < history.pieces[piece + 1] && filled < kTradesAhead; ++i) {
          future[filled++] = static_cast<float>(history.results[i]);
        }
      }
    }
  });
  return futures;
}

// How far an account falls in one future.
struct Fall {
  double lowest = 1;     // account
  double from_peak = 0;  // share
};

Fall FallOf(std::span<const float> future, double size) {
  double account = 1;
  double peak = 1;
  Fall fall;
  for (const float result : future) {
    account *= std::max(1 + size * static_cast<double>(result), 0.0);
    peak = std::max(peak, account);
    fall.lowest = std::min(fall.lowest, account);
    fall.from_peak = std::max(fall.from_peak, 1 - account / peak);
  }
  return fall;
}

// Of each future.
std::vector<Fall> FallsOf(const Futures& futures, double size) {
  std::vector<Fall> falls;
  falls.reserve(futures.size() / kTradesAhead);
  for (std::size_t first = 0; first < futures.size(); first += kTradesAhead) {
    falls.push_back(FallOf(std::span(futures).subspan(first, kTradesAhead), size));
  }
  return falls;
}

template <typename Condition>
double ShareOf(const std::vector<Fall>& falls, Condition condition) {
  const auto count = static_cast<double>(std::ranges::count_if(falls, condition));
  return falls.empty() ? 0 : count / static_cast<double>(falls.size());
}

double ShareFallen(const std::vector<Fall>& falls, double share) {
  return ShareOf(falls, [&](const Fall& fall) { return fall.from_peak >= share; });
}

// A larger size makes nearly every future fall deeper, so halving the interval finds the largest
// one.
double LargestSize(const Futures& futures) {
  const auto accepted = [&](double size) {
    return ShareFallen(FallsOf(futures, size), kWorstFall) < kAcceptedRisk;
  };
  if (accepted(kLargestSize)) return kLargestSize;
  double low = 0;
  double high = kLargestSize;
  for (int i = 0; i < kHalvings; ++i) {
    const double middle = (low + high) / 2;
    (accepted(middle) ? low : high) = middle;
  }
  return low;
}

}  // namespace

std::optional<RiskAhead> ComputeRiskAhead(const Played& played,
                                          std::span<const std::int32_t> selection,
                                          const RoundOptions& options) {
  const ShareHistory history = HistoryOf(played, selection);
  if (history.results.size() < kTooFewTrades) return std::nullopt;
  const Futures futures = DrawFutures(history, options);
  RiskAhead risk;
  risk.trades = static_cast<int>(history.results.size());
  const std::vector<Fall> falls = FallsOf(futures, 1);
  risk.ruin = ShareOf(falls, [](const Fall& fall) { return fall.lowest <= kRuinShare; });
  std::ranges::transform(kFallShares, risk.falls.begin(),
                         [&](double share) { return ShareFallen(falls, share); });
  risk.size = LargestSize(futures);
  if (history.with_risk > 0) risk.risk_per_trade = risk.size * history.risked / history.with_risk;
  return risk;
}

}  // namespace velumar
