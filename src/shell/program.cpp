#include "shell/program.h"

#include "host/host_control.h"
#include "host/reg_info.h"
#include "session/run_control.h"
#include "shell/symbol_catalogue.h"
#include "shell/big_displays.h"
#include "shell/event_guard.h"
#include "shell/navigator_window.h"
#include "shell/preview_window.h"
#include "shell/result_window.h"
#include "shell/score_board.h"
#include "shell/setup_window.h"
#include "shell/trade_panel.h"
#include "trading/status_display.h"

namespace velumar {

struct Program::Parts {
  Parts(SimSession& session, Desktop& desktop, const Platform& outside, IndexCache& cache,
        LedgerConnection& ledger)
      : platform(outside),
        registry(platform.registry, platform.boxes),
        status(session, desktop, platform.locale),
        trader(platform.chart_windows),
        chart(session, desktop, platform, registry, status, trader),
        catalogue(session, desktop, platform, cache),
        run(session, desktop, platform, cache, ledger, chart),
        drop(session, desktop, platform, catalogue, cache),
        orders(session, desktop, platform, ledger, status),
        panel(session, desktop, platform, status, orders),
        setup(session, desktop, platform, catalogue, run, panel, registry, ledger, drop, cache),
        navigator(session, desktop, platform, run),
        big(session, desktop, platform),
        score_board(session, desktop, platform),
        results(desktop, platform, ledger, score_board),
        preview(desktop, platform),
        keys(
            session, desktop, trader, [this] { return chart.OpeningChart(); },
            EventGuard(platform.boxes)("Opening the score board", [this] { score_board.Open(); })) {
  }

  Platform platform;
  RegInfo registry;
  StatusDisplay status;
  TraderFocus trader;
  HostControl chart;
  SymbolCatalogue catalogue;
  RunControl run;
  CsvDrop drop;
  OrderDesk orders;
  TradePanel panel;
  SetupWindow setup;
  NavigatorWindow navigator;
  BigDisplays big;
  ScoreBoard score_board;
  ResultWindow results;
  PreviewWindow preview;
  RunKeys keys;
};

Program::Program(SimSession& session, Desktop& desktop, const Platform& platform, IndexCache& cache,
                 LedgerConnection& ledger)
    : desktop_(desktop),
      parts_(std::make_unique<Parts>(session, desktop, platform, cache, ledger)) {
  parts_->catalogue.OfferWhenEmpty([this] { return parts_->drop.OfferDirectory(); });
  // The directory box starts from what the platform calls its samples.
  desktop.Untouched().form1.Text3.SetStartText(platform.default_data_dir);
}

Program::~Program() = default;

void Program::Start() { desktop_.form1().Show(); }

bool Program::Feeding() const { return parts_->run.Feeding(); }

void Program::ShowAgain() {
  constexpr int kSeen = 250;
  const Desktop::Windows windows = desktop_.Untouched();
  if (windows.form2.Loaded()) windows.form2.HScrollx.SetValue(kSeen);
  if (windows.form3.Loaded()) windows.form3.HScrollx.SetValue(kSeen);
}

RunKeys& Program::Keys() { return parts_->keys; }

OrderResult Program::LastOrder() const { return parts_->orders.LastResult(); }

}  // namespace velumar
