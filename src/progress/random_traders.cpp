#include "progress/random_traders.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <numeric>
#include <optional>
#include <span>
#include <tuple>

#include "base/decimal.h"
#include "base/number_text.h"
#include "progress/progress_figures.h"
#include "progress/usual_move.h"

namespace velumar {

namespace {

// A trade as it could have been at any bar that leaves room for it.
struct MovableTrade {
  const float* closes = nullptr;  // of its session
  std::uint32_t count = 0;        // of closes
  std::uint32_t entry = 0;        // close at which it was entered
  std::uint32_t bars = 0;         // it was held
  double position = 0;            // money per point; below 0 on the short side
  double compared = 0;            // usual moves per point; below 0 on the short side

  double Rise(std::uint32_t from, std::uint32_t held) const {
    return static_cast<double>(closes[from + held]) - static_cast<double>(closes[from]);
  }
};

// Nothing if the trade cannot be moved: see SkillOrLuck::trades.
std::optional<MovableTrade> Movable(const Played& played, const std::vector<double>& usual_moves,
                                    const PlayedTrade& trade) {
  const PlayedSession& session = played.SessionAt(trade.session);
  const auto count = static_cast<std::int64_t>(session.closes.size());
  const std::int64_t entry = std::int64_t{trade.entry_bar} - session.first_bar;
  const std::int64_t bars = std::int64_t{trade.exit_bar} - trade.entry_bar;
  if (trade.entry_bar == kAbsent || entry < 0 || bars < 0 || entry + bars >= count) {
    return std::nullopt;
  }
  const double usual = usual_moves[static_cast<std::size_t>(trade.session)];
  const double side = trade.is_long ? 1 : -1;
  return MovableTrade{.closes = session.closes.data(),
                      .count = static_cast<std::uint32_t>(count),
                      .entry = static_cast<std::uint32_t>(entry),
                      .bars = static_cast<std::uint32_t>(bars),
                      .position = side * trade.quantity * trade.money_per_point,
                      .compared = usual > 0 ? side / usual : 0};
}

double BuyAndHold(const Played& played, std::span<const std::int32_t> selection) {
  double money = 0;
  for (const SelectedSession& selected : BySession(played, selection)) {
    const auto& closes = played.SessionAt(selected.session).closes;
    if (closes.empty()) continue;
    double quantities = 0;
    for (const std::int32_t place : selected.trades) {
      const PlayedTrade& trade = played.TradeAt(place);
      quantities += trade.quantity * trade.money_per_point;
    }
    const double change = ReadableDouble(closes.back()) - ReadableDouble(closes.front());
    money += quantities / static_cast<double>(selected.trades.size()) * change;
  }
  return money;
}

// The holding times of trades that are alike. In each round all move on by the same number of
// trades, which deals them out again.
class HoldingTimes {
 public:
  // Returns the trade's place among those of its kind.
  std::size_t Add(std::uint32_t bars) {
    bars_.push_back(bars);
    return bars_.size() - 1;
  }
  // After all trades have been added.
  void Close() { bars_.insert(bars_.end(), bars_.begin(), bars_.end()); }

  std::vector<std::uint32_t> DrawMoves(std::size_t deals, RandomSource& random) const {
    std::vector<std::uint32_t> moves(deals);
    const auto trades = static_cast<std::uint32_t>(bars_.size() / 2);
    for (std::uint32_t& move : moves) move = random.Below(trades);
    return moves;
  }
  // From the trade at the place on.
  const std::uint32_t* From(std::size_t place) const { return &bars_[place]; }

 private:
  std::vector<std::uint32_t> bars_;  // twice
};

// A deal is used by some rounds, which draw their entries each: dealing costs as much as drawing.
constexpr std::size_t kRoundsOfDeal = 16;

// All trades of the groups, each drawn once in a round for all groups that have it.
class RandomTraders {
 public:
  RandomTraders(const Played& played, const std::vector<double>& usual_moves,
                const std::vector<TradeGroup>& groups)
      : results_(groups.size()) {
    // Trade by trade, so that the closes of a session stay in the cache for all rounds of a block.
    std::vector<std::pair<std::int32_t, std::uint32_t>> members;
    for (std::size_t group = 0; group < groups.size(); ++group) {
      for (const std::int32_t place : groups[group].trades) {
        members.emplace_back(place, static_cast<std::uint32_t>(group));
      }
    }
    std::ranges::sort(members);
    std::int32_t last = kAbsent;
    for (const auto& [place, group] : members) {
      const PlayedTrade& trade = played.TradeAt(place);
      if (place != last && !Add(played, usual_moves, trade)) continue;
      last = place;
      groups_.push_back(group);
      trades_.back().end = groups_.size();
    }
    for (HoldingTimes& times : times_) times.Close();
  }

  void Compute(const RoundOptions& options) {
    for (auto& results : results_) results.assign(static_cast<std::size_t>(options.count), 0);
    RunRounds(options, [this](int first, int end, RandomSource& random) {
      Trade(static_cast<std::size_t>(first), static_cast<std::size_t>(end), random);
    });
    for (auto& results : results_) std::ranges::sort(results);
  }

  std::vector<double> TakeResults(std::size_t group) { return std::move(results_[group]); }

 private:
  struct GroupedTrade {
    MovableTrade trade;
    std::size_t kind = 0;   // in times_
    std::size_t place = 0;  // among those of its kind
    std::size_t first = 0;  // its groups in groups_
    std::size_t end = 0;
  };
  using Kind = std::tuple<std::int32_t, std::int32_t, bool>;  // interval, setup, side

  // Returns false if the trade cannot be moved.
  bool Add(const Played& played, const std::vector<double>& usual_moves, const PlayedTrade& trade) {
    const auto movable = Movable(played, usual_moves, trade);
    if (!movable) return false;
    const PlayedSession& session = played.SessionAt(trade.session);
    const std::size_t kind =
        kinds_.try_emplace(Kind{session.interval, trade.setup, trade.is_long}, times_.size())
            .first->second;
    if (kind == times_.size()) times_.emplace_back();
    const std::size_t place = times_[kind].Add(movable->bars);
    trades_.push_back({*movable, kind, place, groups_.size(), groups_.size()});
    return true;
  }

  void Trade(std::size_t first, std::size_t end, RandomSource& random) {
    const std::size_t deals = (end - first + kRoundsOfDeal - 1) / kRoundsOfDeal;
    std::vector<double> drawn(deals * kRoundsOfDeal);
    std::vector<std::vector<std::uint32_t>> moves;
    moves.reserve(times_.size());
    for (const HoldingTimes& times : times_) moves.push_back(times.DrawMoves(deals, random));
    for (const GroupedTrade& grouped : trades_) {
      const MovableTrade trade = grouped.trade;
      const std::uint32_t* const times = times_[grouped.kind].From(grouped.place);
      const std::uint32_t* const move = moves[grouped.kind].data();
      for (std::size_t deal = 0; deal < deals; ++deal) {
        const std::uint32_t dealt = times[move[deal]];
        const std::uint32_t bars = dealt < trade.count ? dealt : trade.bars;
        double* const results = &drawn[deal * kRoundsOfDeal];
        for (std::size_t i = 0; i < kRoundsOfDeal; i += 2) {
          const auto [from, other] = random.TwoBelow(trade.count - bars);
          results[i] = trade.compared * trade.Rise(from, bars);
          results[i + 1] = trade.compared * trade.Rise(other, bars);
        }
      }
      for (std::size_t i = grouped.first; i < grouped.end; ++i) {
        double* const sums = results_[groups_[i]].data() + first;
        for (std::size_t round = 0; round < end - first; ++round) sums[round] += drawn[round];
      }
    }
  }

  std::map<Kind, std::size_t> kinds_;
  std::vector<HoldingTimes> times_;
  std::vector<GroupedTrade> trades_;
  std::vector<std::uint32_t> groups_;
  std::vector<std::vector<double>> results_;  // of each group, for each round
};

// A tie counts as doing as well, and so does what rounding makes of one.
double ShareAsGood(const std::vector<double>& ascending, double result) {
  const double tie = result - 1e-9 * std::max(1.0, std::abs(result));
  const auto as_good = ascending.end() - std::ranges::lower_bound(ascending, tie);
  return (static_cast<double>(as_good) + 1) / (static_cast<double>(ascending.size()) + 1);
}

void AdjustShares(std::vector<SkillOrLuck>& groups) {
  std::vector<std::size_t> order(groups.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::ranges::stable_sort(order, {}, [&](std::size_t i) { return groups[i].share; });
  double highest = 0;
  for (std::size_t rank = 0; rank < order.size(); ++rank) {
    SkillOrLuck& group = groups[order[rank]];
    const double raised = group.share * static_cast<double>(order.size() - rank);
    highest = std::max(highest, std::min(raised, 1.0));
    group.adjusted_share = highest;
  }
}

// "7 of 100", "3 of 1,000".
std::string ShareInWords(double share) {
  std::int64_t of = 100;
  while (share * static_cast<double>(of) < 1 && of < 10'000) of *= 10;
  const std::int64_t count =
      std::max<std::int64_t>(std::llround(share * static_cast<double>(of)), 1);
  return ExactText(count) + " of " + GroupedNumber(ExactText(of));
}

}  // namespace

bool SkillOrLuck::Enough() const { return trades >= kTooFewTrades; }

std::vector<SkillOrLuck> CompareWithRandomTraders(const Played& played,
                                                  const std::vector<TradeGroup>& groups,
                                                  const RoundOptions& options) {
  std::vector<double> usual_moves;
  std::ranges::transform(played.sessions, std::back_inserter(usual_moves), UsualMoveOf);
  RandomTraders traders(played, usual_moves, groups);
  traders.Compute(options);
  std::vector<SkillOrLuck> compared;
  for (std::size_t i = 0; i < groups.size(); ++i) {
    SkillOrLuck& skill = compared.emplace_back();
    skill.group = groups[i].name;
    for (const std::int32_t place : groups[i].trades) {
      const auto movable = Movable(played, usual_moves, played.TradeAt(place));
      if (movable) {
        const float* const entry = movable->closes + movable->entry;
        const double points = ReadableDouble(entry[movable->bars]) - ReadableDouble(*entry);
        skill.result += movable->position * points;
        skill.compared += movable->compared * movable->Rise(movable->entry, movable->bars);
      }
      ++(movable ? skill.trades : skill.left_out);
    }
    skill.buy_and_hold = BuyAndHold(played, groups[i].trades);
    skill.random_results = traders.TakeResults(i);
    skill.share = ShareAsGood(skill.random_results, skill.compared);
  }
  AdjustShares(compared);
  return compared;
}

std::vector<TradeGroup> GroupsBySetup(const Played& played, const Selection& selection) {
  std::map<std::string, Selection> by_name;
  for (const std::int32_t place : selection) {
    const std::int32_t setup = played.TradeAt(place).setup;
    if (setup == kAbsent) continue;
    by_name[played.SetupAt(setup)].push_back(place);
  }
  std::vector<TradeGroup> groups;
  groups.reserve(by_name.size());
  for (auto& [name, trades] : by_name) groups.push_back({name, std::move(trades)});
  if (groups.size() == 1 && groups.front().trades.size() == selection.size()) groups.clear();
  return groups;
}

std::string SkillSentence(const SkillOrLuck& skill, std::size_t groups) {
  if (!skill.Enough()) {
    return "Too few trades to compare with random traders: " + ExactText(skill.trades) + ".";
  }
  std::string text = ShareInWords(skill.share) + " random traders did as well";
  if (groups > 1) text += " (" + ExactText(groups) + " groups looked at)";
  return text + (skill.IsSkill() ? ": more than luck." : ": not yet more than luck.");
}

Histogram HistogramOf(const std::vector<double>& ascending, int bins) {
  Histogram histogram{.counts = std::vector<int>(static_cast<std::size_t>(bins))};
  if (ascending.empty()) return histogram;
  histogram.low = ascending.front();
  histogram.high = ascending.back();
  const double width = (histogram.high - histogram.low) / bins;
  for (const double value : ascending) {
    const double place = width > 0 ? (value - histogram.low) / width : 0;
    ++histogram.counts[static_cast<std::size_t>(std::min(place, bins - 1.0))];
  }
  return histogram;
}

}  // namespace velumar
