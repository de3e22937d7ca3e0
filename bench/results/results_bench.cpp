#include <benchmark/benchmark.h>

#include <QApplication>
#include <string>

#include "app/windows/desktop_view.h"
#include "ledger/ledger.h"
#include "marketdata/index_cache.h"
#include "platform/virtual_platform.h"
#include "shell/program.h"

namespace velumar {
namespace {

// The result window on a ledger with this many closing orders, a few per day.
struct Results {
  explicit Results(std::int64_t rows) {
    LedgerOpen(ledger, ":memory:");
    ledger.ForWriting().Execute(
        "with recursive n(i) as (select 0 union all select i + 1 from n where i < " +
        std::to_string(rows - 1) +
        ") insert into MyPortfolio (Symbol, SymbolInterval, ActDate, ActTime, Position, LAmount, "
        "LRealised, BalancePoint, Commission, Portfolio) select 'ABC', 30, "
        "date('1950-01-01', '+' || (i / 5) || ' days'), printf('%02d:30:00', 9 + i % 5), "
        "'Offset Long', 0, 1, 1, 100, 2000000 + i * 7919 % 30011 from n");
  }

  void Show() {
    desktop.frmResult().Show();
    QCoreApplication::processEvents();  // the chart is drawn when the event loop is idle
    view.Find(desktop.frmResult())->grab();
  }

  SimSession session;
  VirtualPlatform outside;
  Desktop desktop;
  DesktopView view{desktop,
                   {Theme::Light(), Typefaces::Installed(), QStringLiteral("dd/MM/yyyy")},
                   [](const std::string&) {}};
  IndexCache cache;
  LedgerConnection ledger{[](std::string_view date) { return std::string(date); }};
  Program program{session, desktop, outside.References(), cache, ledger};
  FrmResult& form = desktop.Untouched().frmResult;
};

void OpenResults(benchmark::State& state) {
  Results results(state.range(0));
  for (auto round : state) {
    results.Show();
    state.PauseTiming();
    results.desktop.Unload(results.form);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    state.ResumeTiming();
  }
}

void DrawChartWithDepth(benchmark::State& state) {
  Results results(state.range(0));
  results.Show();
  int entry = 1;
  for (auto round : state) {
    results.form.Combo1.SetIndex(entry);
    results.Show();
    entry = entry == 1 ? 5 : 1;
  }
}

BENCHMARK(OpenResults)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(DrawChartWithDepth)->Arg(100000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace velumar

int main(int argument_count, char** arguments) {
  const QApplication application(argument_count, arguments);
  benchmark::Initialize(&argument_count, arguments);
  benchmark::RunSpecifiedBenchmarks();
}
