// Figures of 100,000 trades in 2,000 sessions of 500 bars, next to bare loops over the same arrays.

#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <algorithm>
#include <numeric>

#include "ledger/trades.h"
#include "progress/played_ledger.h"
#include "progress/progress_figures.h"
#include "progress/random_traders.h"
#include "progress/ruin.h"
#include "session/played_trades.h"
#include "support/scratch_folder.h"
#include "support/simulated_traders.h"

namespace velumar {

namespace {

constexpr int kSessions = 2000;
constexpr int kTradesInSession = 50;
constexpr int kBars = 500;

const Played& LargeLedger() {
  static const Played played = [] {
    RandomSource random(1);
    return SimulateTrading(
        {.sessions = kSessions, .bars = kBars, .trades = kTradesInSession, .setups = 12}, random);
  }();
  return played;
}

const Selection& AllTrades() {
  static const Selection all = Select(LargeLedger(), {});
  return all;
}

void NoteMemory(benchmark::State& state) {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  state.counters["MB"] = static_cast<double>(usage.ru_maxrss) / 1024;
}

void FilterTrades(benchmark::State& state) {
  const TradeFilter filter{.setup = 3, .is_long = true, .blind = true, .from_day = 20260110};
  LargeLedger();
  while (state.KeepRunning()) benchmark::DoNotOptimize(Select(LargeLedger(), filter));
}
BENCHMARK(FilterTrades)->UseRealTime()->Unit(benchmark::kMillisecond);

// One pass over the trades and one over the closes.
void BareSums(benchmark::State& state) {
  const Played& played = LargeLedger();
  while (state.KeepRunning()) {
    double sum = 0;
    for (const PlayedTrade& trade : played.trades) sum += trade.Net();
    for (const PlayedSession& session : played.sessions) {
      for (const float close : session.closes) sum += static_cast<double>(close);
    }
    benchmark::DoNotOptimize(sum);
  }
}
BENCHMARK(BareSums)->UseRealTime()->Unit(benchmark::kMillisecond);

void FilterAndFigures(benchmark::State& state) {
  LargeLedger();
  while (state.KeepRunning()) {
    const Selection selection = Select(LargeLedger(), {});
    benchmark::DoNotOptimize(ComputeFigures(LargeLedger(), selection,
                                            ChainEquity(LargeLedger(), selection), {.count = 0}));
  }
  NoteMemory(state);
}
BENCHMARK(FilterAndFigures)->UseRealTime()->Unit(benchmark::kMillisecond);

LedgerTrade Kept(const PlayedTrade& trade, int run, int place) {
  LedgerTrade kept;
  kept.entry = {{run, 2 * place - 1}, trade.entry_day, 93000, trade.entry_bar, trade.entry_price};
  kept.exit = {{run, 2 * place}, trade.entry_day, 100000, trade.exit_bar, trade.exit_price};
  kept.is_long = trade.is_long;
  kept.quantity = trade.quantity;
  kept.money_per_point = trade.money_per_point;
  kept.money = trade.money;
  kept.costs = trade.costs;
  kept.adverse = kept.favourable = 1;
  return kept;
}

// All of it in a file: each session is a run with an entry, a plan and an exit for each trade.
void WriteLargeLedger(const std::string& file) {
  const Played& played = LargeLedger();
  LedgerConnection ledger([](std::string_view date) { return std::string(date); });
  LedgerOpen(ledger, file);
  auto trade = played.trades.begin();
  for (int number = 1; number <= kSessions; ++number) {
    LedgerRun run;
    run.interval = "5";
    run.starting_money = 20000;
    LedgerMoment moment;
    moment.newest_shown = kBars;
    LedgerBeginRun(ledger, run, {}, moment);
    LedgerTrades kept;
    kept.scope = LedgerScope::Session(number);
    kept.orders = 2 * kTradesInSession;
    kept.newest_shown = kBars;
    kept.closes = played.SessionAt(number - 1).closes;
    for (int place = 1; place <= kTradesInSession; ++place) {
      kept.trades.push_back(Kept(*trade++, number, place));
    }
    LedgerWriteTrades(ledger, kept);
  }
  ledger.ForWriting().Execute(
      "INSERT INTO Details (Run, Place, Quantity, BarIndex, NewestShown) "
      "SELECT EntryRun, EntryPlace, Quantity, EntryBar, 0 FROM Trades UNION ALL "
      "SELECT ExitRun, ExitPlace, Quantity, ExitBar, 0 FROM Trades ORDER BY 1, 2; "
      "INSERT INTO Plans (Session, Run, Place, Setup, Confidence, Risk) "
      "SELECT Session, EntryRun, EntryPlace, 'setup ' || (Key % 12), 3, 50 FROM Trades");
}

// What the tab computes from the click to its figures, the ledger being open.
void FirstPage(benchmark::State& state) {
  const ScratchFolder folder;
  const std::string file = folder.Sub("large.mdb");
  WriteLargeLedger(file);
  IndexCache cache;
  while (state.KeepRunning()) {
    state.PauseTiming();
    LedgerConnection ledger([](std::string_view date) { return std::string(date); });
    LedgerOpen(ledger, file);
    state.ResumeTiming();
    const std::vector<PlayedScope> scopes = PlayedScopes(ledger, cache);
    const Played played = PlayedOf(scopes, LedgerEntryPlans(ledger));
    const Selection selection = Select(played, {});
    const ProgressFigures figures =
        ComputeFigures(played, selection, ChainEquity(played, selection), {.count = 0});
    if (selection.size() != LargeLedger().trades.size()) state.SkipWithError("trades are missing");
    benchmark::DoNotOptimize(figures);
  }
  NoteMemory(state);
}
BENCHMARK(FirstPage)->UseRealTime()->Unit(benchmark::kMillisecond);

// The draws of 10,000 rounds over the sessions, adding one number for each.
void BareBootstrap(benchmark::State& state) {
  std::vector<double> sums(kSessions, 1);
  while (state.KeepRunning()) {
    benchmark::DoNotOptimize(
        Resample(kSessions, 1, {}, [&](std::span<const std::uint32_t> drawn, auto statistics) {
          double sum = 0;
          for (const std::uint32_t unit : drawn) sum += sums[unit];
          statistics[0] = sum;
        }));
  }
}
BENCHMARK(BareBootstrap)->UseRealTime()->Unit(benchmark::kMillisecond);

void FiguresWithIntervals(benchmark::State& state) {
  const Selection& selection = AllTrades();
  const EquityCurve curve = ChainEquity(LargeLedger(), selection);
  while (state.KeepRunning()) {
    benchmark::DoNotOptimize(ComputeFigures(LargeLedger(), selection, curve, {}));
  }
  NoteMemory(state);
}
BENCHMARK(FiguresWithIntervals)->UseRealTime()->Unit(benchmark::kMillisecond);

// The draws of 10,000 traders, adding a close for each.
void BareRandomTraders(benchmark::State& state) {
  const Played& played = LargeLedger();
  while (state.KeepRunning()) {
    std::vector<double> sums(10'000);
    RunRounds({}, [&](int first, int end, RandomSource& random) {
      std::vector<float> round(static_cast<std::size_t>(end - first));
      for (const PlayedTrade& trade : played.trades) {
        const float* closes = played.SessionAt(trade.session).closes.data();
        for (float& sum : round) sum += closes[(random.Next() >> 32) * kBars >> 32];
      }
      std::ranges::copy(round, sums.begin() + first);
    });
    benchmark::DoNotOptimize(sums.data());
  }
}
BENCHMARK(BareRandomTraders)->UseRealTime()->Unit(benchmark::kMillisecond);

// Range: groups by setup next to the whole.
void RandomTraderRounds(benchmark::State& state) {
  std::vector<TradeGroup> groups;
  if (state.range(0) != 0) groups = GroupsBySetup(LargeLedger(), AllTrades());
  groups.insert(groups.begin(), {"all", AllTrades()});
  while (state.KeepRunning()) {
    benchmark::DoNotOptimize(CompareWithRandomTraders(LargeLedger(), groups, {}));
  }
  NoteMemory(state);
}
BENCHMARK(RandomTraderRounds)->Arg(0)->Arg(1)->UseRealTime()->Unit(benchmark::kMillisecond);

void RiskOfRuin(benchmark::State& state) {
  const Selection& selection = AllTrades();
  while (state.KeepRunning()) {
    benchmark::DoNotOptimize(ComputeRiskAhead(LargeLedger(), selection, {}));
  }
  NoteMemory(state);
}
BENCHMARK(RiskOfRuin)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace

}  // namespace velumar
