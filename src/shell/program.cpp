#include "shell/program.h"

#include "host/chart_registry.h"
#include "host/host_control.h"
#include "session/blind_draw.h"
#include "session/card_making.h"
#include "session/card_play.h"
#include "session/run_control.h"
#include "shell/card_window.h"
#include "shell/drill_chart_window.h"
#include "shell/drill_window.h"
#include "shell/event_guard.h"
#include "shell/import_window.h"
#include "shell/navigator_window.h"
#include "shell/practice_window.h"
#include "shell/preview_window.h"
#include "shell/price_importer.h"
#include "shell/result_window.h"
#include "shell/run_windows.h"
#include "shell/score_board.h"
#include "shell/setup_window.h"
#include "shell/symbol_catalogue.h"
#include "shell/ticket_window.h"
#include "shell/trade_panel.h"

namespace velumar {

struct Program::Parts {
  Parts(SimSession& session, Desktop& desktop, const Platform& outside, IndexCache& cache,
        LedgerConnection& ledger)
      : platform(outside),
        windows(desktop),
        registry(platform.registry, platform.boxes),
        trader(platform.chart_windows),
        chart(session, windows, windows, platform, registry, trader),
        importer(cache),
        import(desktop, platform, importer,
               {[this, &session] { return run.Feeding() || session.Preparing; },
                [this](const FoundSeries& first) {
                  catalogue.ListAndChoose(first.symbol, first.interval);
                }}),
        catalogue(session, desktop, platform, cache, import),
        run(session, windows, windows, platform, cache, ledger, chart),
        orders(session, windows, windows, platform, ledger, chart),
        account(session, windows, desktop),
        panel(session, windows, desktop, platform, account, orders, chart),
        setup(session, windows, desktop, platform, catalogue, import, run, panel, account, registry,
              ledger, cache),
        cards(ledger, cache, platform.clock,
              platform.settings.Read(kBlindPricesSetting) != kRealPrices),
        card(session, platform, ledger, cache, run),
        card_window(desktop, platform, ledger, card, [this] { practice.ShowCards(); }),
        practice(
            desktop, platform, ledger, cache, run, cards,
            [this](int number) { setup.ResumeSession(number); },
            [this](int number) { card_window.Open(number); }),
        drill(session, run, orders, windows, platform, ledger),
        drill_charts(desktop, platform, ledger, cache, run, drill,
                     [this](int bars) { return setup.PlayDrawn(bars); }),
        drills(session, desktop, platform, ledger, cache, drill_charts),
        navigator(session, windows, desktop, platform, run, ledger,
                  [this] { drill_charts.Leave(); }),
        score_board(session, desktop, platform),
        results(desktop, platform, ledger, cache, score_board, cards,
                [this](const LedgerOrderKey& entry) { setup.PlayAgain(entry); }),
        preview(desktop, platform),
        plans(session, windows, platform, ledger, chart),
        ticket(desktop, platform, plans),
        keys(
            session, desktop, trader, [this] { return chart.OpeningChart(); }, KeyCommands()) {}

  RunKeys::Commands KeyCommands() {
    const EventGuard guarded(platform.boxes);
    return {{run_key::kBoard, guarded("Opening the score board", [this] { score_board.Open(); })},
            {run_key::kGoTo, guarded("Moving to a date", [this] { run.GoToDate(); })},
            {run_key::kEarlierTrade,
             guarded("Showing the earlier trade", [this] { run.ShowEarlierTrade(); })},
            {run_key::kPlan, guarded("Opening the plan", [this] { ticket.Open(); })},
            {run_key::kMark, guarded("Marking the bar", [this] { run.MarkBar(cards); })}};
  }

  Platform platform;
  RunWindows windows;
  ChartRegistry registry;
  TraderFocus trader;
  HostControl chart;
  FileImporter importer;
  ImportWindow import;
  SymbolCatalogue catalogue;
  RunControl run;
  OrderDesk orders;
  AccountBoxes account;
  TradePanel panel;
  SetupWindow setup;
  CardMaker cards;
  CardPlay card;
  CardWindow card_window;
  PracticeWindow practice;
  Drill drill;
  DrillChartWindow drill_charts;
  DrillWindow drills;
  NavigatorWindow navigator;
  ScoreBoard score_board;
  ResultWindow results;
  PreviewWindow preview;
  TradeTicket plans;
  TicketWindow ticket;
  RunKeys keys;
};

Program::Program(SimSession& session, Desktop& desktop, const Platform& platform, IndexCache& cache,
                 LedgerConnection& ledger)
    : desktop_(desktop),
      parts_(std::make_unique<Parts>(session, desktop, platform, cache, ledger)) {
  // The directory box starts with the samples.
  desktop.Untouched().form1.Text3.SetStartText(platform.default_data_dir);
}

Program::~Program() = default;

void Program::Start() { desktop_.form1().Show(); }

void Program::ResumeSession(int number) { parts_->setup.ResumeSession(number); }

bool Program::Feeding() const { return parts_->run.Feeding(); }

void Program::ShowAgain() {
  constexpr int kSeen = 250;
  Desktop::Windows& windows = desktop_.Untouched();
  if (windows.form2.Loaded()) windows.form2.HScrollx.SetValue(kSeen);
  if (windows.form3.Loaded()) windows.form3.HScrollx.SetValue(kSeen);
}

void Program::SetTheme(bool dark) { parts_->chart.SetTheme(dark); }

void Program::QuitChartProgram() { parts_->chart.QuitStarted(); }

void Program::Tick() {
  EventGuard(parts_->platform.boxes)("The drill", [this] { parts_->drill_charts.Check(); })();
  if (parts_->keys.InRun() || parts_->card.Playing()) parts_->chart.CatchUp();
}

void Program::ChartClosedByTrader(std::uint32_t process) {
  parts_->chart.ChartClosedByTrader(process);
}

void Program::Compare(int file_number) { parts_->run.Compare(file_number); }

void Program::EndCompare(int file_number) { parts_->run.EndCompare(file_number); }

RunKeys& Program::Keys() { return parts_->keys; }

OrderResult Program::LastOrder() const { return parts_->orders.LastResult(); }

}  // namespace velumar
