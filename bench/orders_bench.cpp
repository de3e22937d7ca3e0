#include <benchmark/benchmark.h>

#include <cstdint>
#include <filesystem>
#include <stdexcept>
#include <string>

#include "ledger/ledger.h"
#include "platform/virtual_platform.h"
#include "session/sim_session.h"
#include "support/recorded_run.h"
#include "trading/orders.h"
#include "trading/status_texts.h"

namespace velumar {
namespace {

std::string AsItIs(std::string_view date) { return std::string(date); }

// An order desk on one bar, with enough money for any number of one-contract orders.
struct Desk {
  explicit Desk(const std::string& file) {
    LedgerOpen(ledger, file);
    session.SessionNumber = LedgerBeginRun(ledger, {});
    session.Symbol = session.Run.symbol = "ABC";
    session.SymbolInterval = "-1";
    session.BarDate = {20070125};
    session.BarTime = {163000};
    for (auto* prices : {&session.BarOpen, &session.BarHigh, &session.BarLow, &session.BarClose}) {
      prices->push_back(100.5F);
    }
    session.ProfitPerContract = 1000;
    session.Balance = session.Portfolio = 2000000;
    run.commission = "0";
    session.Run.interval = run.interval;
  }

  void Trade() {
    if (orders.Long() != OrderResult::kDone || orders.OffsetLong() != OrderResult::kDone) {
      throw std::runtime_error("an order was refused: " + run.refusal);
    }
    session.Orders.clear();
  }

  SimSession session;
  RecordedRun run;
  VirtualPlatform outside;
  Platform platform = outside.References();
  LedgerConnection ledger{AsItIs};
  RecordedCharts charts;
  OrderDesk orders{session, run, run, platform, ledger, charts};
};

std::string FreshFile(const std::string& name) {
  const auto file = std::filesystem::temp_directory_path() / name;
  for (const char* suffix : {"", "-wal", "-shm", "-owner"}) {
    std::filesystem::remove(file.string() + suffix);
  }
  return file.string();
}

// Each iteration is two orders, an entry and its offset.
void BM_OrderWithoutDisk(benchmark::State& state) {
  Desk desk(":memory:");
  for (auto _ : state) desk.Trade();
  state.SetItemsProcessed(state.iterations() * 2);
}
BENCHMARK(BM_OrderWithoutDisk)->Unit(benchmark::kMicrosecond);

// In an empty ledger and in one of 131,072 rows.
void BM_OrderWithDisk(benchmark::State& state) {
  Desk desk(FreshFile("velumar-large-orders.mdb"));
  desk.Trade();
  for (std::int64_t rows = 2; rows < state.range(0); rows *= 2) {
    desk.ledger.ForWriting().Execute(
        "INSERT INTO MyPortfolio SELECT * FROM MyPortfolio;"
        "INSERT INTO Details SELECT * FROM Details");
  }
  for (auto _ : state) desk.Trade();
  state.SetItemsProcessed(state.iterations() * 2);
}
BENCHMARK(BM_OrderWithDisk)->Arg(0)->Arg(131072)->Unit(benchmark::kMicrosecond);

// The time of the disk alone: inserts of one row, each committed and flushed.
struct BareTable {
  explicit BareTable(const std::string& file) : database(file, SqliteDatabase::Mode::kCreate) {
    database.Execute("PRAGMA journal_mode=WAL");
    database.Execute("PRAGMA synchronous=FULL");
    database.Execute("CREATE TABLE Rows (Number NUMERIC, Symbol TEXT)");
  }
  void CommitRow() { database.Execute("INSERT INTO Rows VALUES (1, 'ABC')"); }

  SqliteDatabase database;
};

// As a program starts: each commit makes the log longer.
void BM_BareCommitOfOneRow(benchmark::State& state) {
  constexpr int kBeforeCheckpoint = 900;
  BareTable table(FreshFile("velumar-large-bare.mdb"));
  int commits = 0;
  for (auto _ : state) {
    if (++commits % kBeforeCheckpoint == 0) {
      state.PauseTiming();
      table.database.Execute("PRAGMA wal_checkpoint(TRUNCATE)");
      state.ResumeTiming();
    }
    table.CommitRow();
  }
}
BENCHMARK(BM_BareCommitOfOneRow)->Unit(benchmark::kMicrosecond);

// After more than a thousand commits, when the log is written from its beginning again.
void BM_BareCommitIntoLongLog(benchmark::State& state) {
  constexpr int kUntilCheckpoint = 1100;
  BareTable table(FreshFile("velumar-large-bare.mdb"));
  for (int i = 0; i < kUntilCheckpoint; ++i) table.CommitRow();
  for (auto _ : state) table.CommitRow();
}
BENCHMARK(BM_BareCommitIntoLongLog)->Unit(benchmark::kMicrosecond);

void BM_ShowStatus(benchmark::State& state) {
  Desk desk(":memory:");
  for (auto _ : state) ShowStatus(desk.session, desk.run, desk.outside.locale);
}
BENCHMARK(BM_ShowStatus)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace velumar
