// Checks on simulated traders of known edge that the statistics keep what they promise: intervals
// hold the true value as often as they say, and luck is called skill as rarely. Exits with 1
// otherwise. scripts/check runs it in a release build; it takes under a minute.

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <numeric>
#include <string>
#include <string_view>
#include <vector>

#include "progress/progress_figures.h"
#include "progress/random_traders.h"
#include "support/simulated_traders.h"

namespace velumar {

namespace {

constexpr int kRounds = 999;

struct Bounds {
  double low = 0;
  double high = 1;
};
constexpr Bounds kCoverage{0.93, 0.97};
// Of averages of wins or losses from the fewest sessions: the rare large ones are often missing
// among a dozen.
constexpr Bounds kCoverageOfFew{0.92, 0.97};
constexpr Bounds kFalseAlarms{0.04, 0.06};
constexpr Bounds kAtMostFalseAlarms{0, 0.06};
// Where the price alone decides when a trade ends, its holding time says a little about the market.
constexpr Bounds kWithoutStop{0, 0.09};

bool all_kept = true;

void Report(const std::string& what, int hits, int experiments, Bounds promised) {
  const double share = static_cast<double>(hits) / experiments;
  const bool kept = share >= promised.low && share <= promised.high;
  all_kept = all_kept && kept;
  std::printf("%-64s %6.2f %%  %s\n", what.c_str(), 100 * share, kept ? "" : "NOT AS PROMISED");
  std::fflush(stdout);
}

Selection All(const Played& played) {
  Selection selection(played.trades.size());
  std::iota(selection.begin(), selection.end(), 0);
  return selection;
}

// Runs experiments on all cores and returns how often each of the outcomes came.
std::vector<int> Repeat(int experiments, std::size_t outcomes, std::uint64_t seed,
                        const std::function<std::vector<bool>(RandomSource&)>& experiment) {
  std::vector<std::vector<bool>> all(static_cast<std::size_t>(experiments));
  RunRounds({.count = experiments, .seed = seed}, [&](int first, int end, RandomSource& random) {
    for (int i = first; i < end; ++i) all[static_cast<std::size_t>(i)] = experiment(random);
  });
  std::vector<int> hits(outcomes);
  for (const auto& came : all) {
    for (std::size_t i = 0; i < outcomes; ++i) hits[i] += came.at(i) ? 1 : 0;
  }
  return hits;
}

std::vector<ProgressFigure> FiguresOf(const Played& played, const RoundOptions& options) {
  const Selection all = All(played);
  return ComputeFigures(played, all, ChainEquity(played, all), options).figures;
}

const ProgressFigure& Named(const std::vector<ProgressFigure>& figures, std::string_view name) {
  return *std::ranges::find(figures, name, &ProgressFigure::name);
}

struct Truth {
  std::string_view name;
  double value;
};

bool IsAverageOfSome(std::string_view name) {
  return name == "Average win" || name == "Average loss" || name == "Payoff ratio";
}

// Those that no formula gives are the figures of very many trades.
std::vector<Truth> Truths(Spread spread, double edge) {
  RandomSource random(7);
  const auto figures = FiguresOf(SimulateResults(300'000, spread, edge, random), {.count = 0});
  std::vector<Truth> truths{{"Expectancy", 100 * edge - 5}, {"Expectancy in R", edge}};
  for (const std::string_view name :
       {"Win rate", "Profit factor", "Payoff ratio", "Average win", "Average loss"}) {
    truths.push_back({name, Named(figures, name).value.value()});
  }
  return truths;
}

void CheckCoverage(int experiments) {
  struct Shape {
    std::string_view name;
    Spread spread;
  };
  constexpr double kEdge = 0.2;
  for (const Shape& shape :
       {Shape{"heavy tails", Spread::kHeavyTails}, Shape{"large wins", Spread::kLetsRun},
        Shape{"large losses", Spread::kTakesEarly}}) {
    const std::vector<Truth> truths = Truths(shape.spread, kEdge);
    for (const int sessions : {8, 12, 20, 40}) {
      const auto seed = static_cast<std::uint64_t>(sessions);
      const auto hits = Repeat(experiments, 2 * truths.size(), seed, [&](RandomSource& random) {
        const Played played = SimulateResults(sessions, shape.spread, kEdge, random);
        const auto figures =
            FiguresOf(played, {.count = kRounds, .seed = random.Next(), .threads = 1});
        std::vector<bool> covered;
        std::vector<bool> with_interval;
        for (const Truth& truth : truths) {
          const ProgressFigure& figure = Named(figures, truth.name);
          with_interval.push_back(figure.sureness == ProgressFigure::Sureness::kInterval);
          covered.push_back(with_interval.back() && figure.interval.low <= truth.value &&
                            truth.value <= figure.interval.high);
        }
        covered.insert(covered.end(), with_interval.begin(), with_interval.end());
        return covered;
      });
      for (std::size_t i = 0; i < truths.size(); ++i) {
        Report("95 % interval, " + std::string(truths[i].name) + ", " + std::to_string(sessions) +
                   " sessions, " + std::string(shape.name),
               hits[i], hits[truths.size() + i],
               sessions == 8 && IsAverageOfSome(truths[i].name) ? kCoverageOfFew : kCoverage);
      }
    }
  }
}

void CheckFalseAlarms(const std::string& what, SimulatedTrader trader, int experiments,
                      Bounds promised) {
  const auto hits = Repeat(experiments, 2, 11, [&](RandomSource& random) {
    const Played played = SimulateTrading(trader, random);
    const Selection all = All(played);
    std::vector<TradeGroup> groups = GroupsBySetup(played, all);
    groups.insert(groups.begin(), {"all", all});
    const auto skills = CompareWithRandomTraders(
        played, groups, {.count = kRounds, .seed = random.Next(), .threads = 1});
    const bool any = std::ranges::any_of(skills, &SkillOrLuck::IsSkill);
    return std::vector<bool>{skills.front().share <= 0.05, any};
  });
  Report("Luck alone, 5 of 100, " + what, hits[0], experiments, promised);
  if (trader.setups > 1) {
    Report("Luck alone, any of " + std::to_string(trader.setups + 1) + " groups, " + what, hits[1],
           experiments, kAtMostFalseAlarms);
  }
}

}  // namespace

}  // namespace velumar

// validation [EXPERIMENTS]
int main(int count, char** arguments) {
  using namespace velumar;
  const int experiments = count > 1 ? std::atoi(arguments[1]) : 2500;
  CheckFalseAlarms("overlapping trades", {}, 2 * experiments, kFalseAlarms);
  CheckFalseAlarms("one trade at a time", {.one_at_a_time = true}, 2 * experiments, kFalseAlarms);
  CheckFalseAlarms("stop and target", {.longest = 40, .target = 3, .stop = 3}, 2 * experiments,
                   kFalseAlarms);
  CheckFalseAlarms("stop, no target", {.longest = 40, .target = 100, .stop = 1}, 2 * experiments,
                   kAtMostFalseAlarms);
  CheckFalseAlarms("small target, no stop", {.longest = 40, .target = 1, .stop = 100},
                   2 * experiments, kWithoutStop);
  CheckFalseAlarms("setups", {.setups = 5}, 2 * experiments, kFalseAlarms);
  CheckCoverage(experiments);
  std::puts(all_kept ? "The statistics keep their promises" : "A promise is not kept");
  return all_kept ? 0 : 1;
}
