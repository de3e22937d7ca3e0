#include "shell/result_window.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <map>
#include <optional>
#include <system_error>
#include <utility>
#include <vector>

#include "base/ignoring.h"
#include "base/paths.h"
#include "base/text.h"
#include "base/whole_file.h"
#include "results/journal_list.h"
#include "results/portfolio_chart.h"
#include "results/statistics.h"
#include "shell/event_guard.h"
#include "shell/window_shaping.h"

namespace velumar {

namespace {

constexpr int kFirstType = 2;  // "2D Line" in the list of chart types

// In the order of the list of chart types; its last entry does nothing.
constexpr std::array kTypes = {kChart2DBar,  kChart3DBar,  kChart2DLine,
                               kChart2DArea, kChart3DLine, kChart3DStep};

constexpr std::string_view kChangingTheChart = "Changing the chart";

std::string FormTitle(const std::string& ending) {
  return (ending == "bmp" ? "Pictures" : UpperCased(ending)) + " (*." + ending + ")";
}

ChartRows RowsOf(PortfolioChart portfolio) {
  ChartRows rows;
  rows.hint = std::move(portfolio.hint);
  rows.labels.reserve(portfolio.rows.size());
  rows.values.reserve(portfolio.rows.size());
  for (PortfolioChartRow& row : portfolio.rows) {
    rows.labels.push_back(std::move(row.label));
    rows.values.push_back(double{row.value});
  }
  return rows;
}

// Empty if they are of what the window shows, as its list says.
std::string FiguresOfText(LedgerScope shown, LedgerScope of_figures) {
  if (shown.kind == LedgerScope::Kind::kRun) return "";
  return of_figures == shown ? "Figures: the whole session" : "Figures: only the newest run";
}

}  // namespace

ResultWindow::ResultWindow(Desktop& desktop, Platform& platform, LedgerConnection& ledger,
                           IndexCache& cache, ScoreBoard& score_board, CardMaker& cards,
                           std::function<void(const LedgerOrderKey& entry)> play_again)
    : desktop_(desktop),
      platform_(platform),
      ledger_(ledger),
      score_board_(score_board),
      journal_(desktop, platform, ledger, cards, std::move(play_again)),
      progress_(desktop, platform, ledger, cache) {
  Desktop::Windows& windows = desktop_.Untouched();
  const EventGuard guarded(platform_.boxes);
  windows.form1.imgGraph.on_click = windows.form3.imgGraph.on_click =
      guarded("Opening the results", [this] { Open(); });
  FrmResult& form = windows.frmResult;
  form.on_load = guarded("Opening the results", [this] { Load(); });
  form.on_close = form.on_escape =
      guarded("Closing the results", [this] { desktop_.Unload(Window()); });
  form.on_unload = guarded("Keeping the note", [this] {
    progress_.Leave();
    journal_.KeepNote();
  });
  Chart& chart = form.MSChart1;
  std::map<int, std::function<void()>> buttons{
      {FrmResult::kSaveAs, guarded("Saving the chart", [this] { SaveChartAs(); })},
      {FrmResult::kPreview, guarded("Opening the print preview", [this] { OpenPreview(); })},
      {FrmResult::kShadow, guarded(kChangingTheChart, [&chart] { chart.SetShadow(true); })},
      {FrmResult::kNoShadow, guarded(kChangingTheChart, [&chart] { chart.SetShadow(false); })},
      {FrmResult::kEffect, guarded(kChangingTheChart, [&chart] { chart.SetWallWhite(); })},
      {FrmResult::kDefault, guarded(kChangingTheChart, [this] { RestoreChart(); })},
      {FrmResult::kReport, guarded("Printing the report", [this] { PrintReport(); })},
      {FrmResult::kClose, form.on_close}};
  form.Toolbar1.on_button = [buttons = std::move(buttons)](int button) { buttons.at(button)(); };
  form.Combo1.on_click = guarded(kChangingTheChart, [this] { ApplyChartType(); });
  form.Combo1.on_key_up = guarded(kChangingTheChart, [this](int) { ApplyChartType(); });
  form.picCommonDialog.on_click = guarded(kChangingTheChart, [this] { ChooseColour(); });
  form.lnkScore.on_click = guarded("Opening the score board", [this] { score_board_.Open(); });
  form.cbxRun.on_click = guarded("Reading the results", [this] { Choose(); });
  form.tabSheets.on_click = guarded("Reading the account", [this] { ChooseTab(); });
  form.lstOrders.on_header =
      guarded("Sorting the orders", [this](std::size_t column) { SortOrdersBy(column); });
  form.cmdCopy.on_click = guarded("Copying", [this] { Copy(); });
  form.lstOrders.on_copy = form.lstStatistics.on_copy = form.cmdCopy.on_click;
  form.cmdExport.on_click = guarded("Exporting", [this] { Export(); });
}

// A window that the preview opened hidden may lack the newest orders.
void ResultWindow::Open() {
  FrmResult& form = desktop_.Untouched().frmResult;
  if (!form.Visible()) desktop_.Unload(form);
  Window().Show();
}

void ResultWindow::Load() {
  FrmResult& form = Window();
  form.SetTopmost(true);
  CentreOnScreen(form, platform_.screen);
  form.MSChart1.SetPlace(0, 0);
  form.MSChart1.SetSize(form.Frame3.Width(), form.Frame3.Height());
  form.full_width = static_cast<std::int32_t>(std::lround(form.MSChart1.Width()));
  form.full_height = static_cast<std::int32_t>(std::lround(form.MSChart1.Height()));
  SetUpTables();
  tab_ = FrmResult::kChartTab;
  account_.reset();
  ShowTab();
  ListChoices();
  form.Combo1.SetIndex(kFirstType);
  try {
    Show(Read(scope_, false));
  } catch (const LedgerError& error) {
    platform_.boxes.Show(std::string("The results could not be read.\n") + error.what(),
                         BoxIcon::kExclamation);
  }
  form.MSChart1.SetSeriesColour(form.picCommonDialog.ForeColour());
}

void ResultWindow::SetUpTables() {
  FrmResult& form = Window();
  form.lstStatistics.SetColumns({{"Figure"}, {"Value", true}});
  std::vector<Table::Column> columns;
  columns.reserve(std::size(kOrderColumns));
  for (const OrderColumn& column : kOrderColumns) {
    columns.push_back({std::string(column.title), column.numeric});
  }
  form.lstOrders.SetColumns(std::move(columns));
  journal_.SetUp();
  progress_.SetUp();
}

// If the ledger can't be read, reading the results says so.
void ResultWindow::ListChoices() {
  choices_.clear();
  IgnoringErrors([this] { choices_ = ResultChoices(ledger_); });
  // Before the list is set: choosing what is shown already reads nothing.
  scope_ = choices_.empty() ? kCurrentRun : choices_.front().scope;
  std::vector<ComboBox::Row> rows;
  rows.reserve(choices_.size());
  for (const ResultChoice& choice : choices_) rows.push_back({choice.title, 0});
  ComboBox& list = Window().cbxRun;
  list.SetEnabled(!rows.empty());
  list.SetRows(std::move(rows));
  if (list.Enabled()) list.SetIndex(0);
}

LedgerScope ResultWindow::FiguresScope(LedgerScope scope) {
  const bool current = scope.kind == LedgerScope::Kind::kSession && scope == choices_.front().scope;
  return current ? LedgerScope::Run(NewestRun(ledger_, scope)) : scope;
}

ResultWindow::Reading ResultWindow::Read(LedgerScope scope, bool with_account) {
  const LedgerScope of_figures = FiguresScope(scope);
  Reading reading{LoadResultFigures(ledger_, of_figures),
                  of_figures,
                  RowsOf(LoadPortfolioChart(ledger_, scope)),
                  std::nullopt,
                  {}};
  if (!with_account) return reading;
  reading.account = ReadAccount(ledger_, scope);
  reading.journal = ReadJournal(ledger_, scope);
  return reading;
}

void ResultWindow::Show(Reading reading) {
  WriteFigures(reading.figures);
  Window().lblFiguresOf.SetText(FiguresOfText(scope_, reading.of_figures));
  // Setting rows ends a zoom, so only new ones are set.
  Chart& chart = Window().MSChart1;
  if (reading.rows != *chart.Content().rows) chart.SetRows(std::move(reading.rows));
  account_ = std::move(reading.account);
  if (!account_) return;
  ShowStatistics();
  ShowOrders();
  journal_.Show(std::move(reading.journal));
}

// Blank before the first order.
void ResultWindow::WriteFigures(const ResultFigures& figures) {
  FrmResult& form = Window();
  const auto texts = ResultFigureTexts(figures);
  const std::array labels = {
      &form.lblSymbol,    &form.lblInterval,       &form.lblStartDate,       &form.lblStartDateTime,
      &form.lblEndDate,   &form.lblEndDateTime,    &form.lblPortfolio,       &form.lblLong,
      &form.lblShort,     &form.lblLongProfitLoss, &form.lblShortProfitLoss, &form.lblLongComm,
      &form.lblShortComm, &form.lblTotalComm};
  static_assert(labels.size() == texts.size());
  for (std::size_t i = 0; i < labels.size(); ++i) {
    labels[i]->SetText(figures.any_orders ? texts[i].text : "");
  }
}

void ResultWindow::ApplyChartType() {
  const int index = Window().Combo1.Index();
  if (index < 0 || index >= static_cast<int>(kTypes.size())) return;
  Window().MSChart1.SetType(kTypes.at(static_cast<std::size_t>(index)));
}

void ResultWindow::RestoreChart() {
  Window().MSChart1.ToDefaults();
  Window().Combo1.SetIndex(kFirstType);  // the list names what the chart shows
}

// The file is kept even if its row in the ledger can't be written.
void ResultWindow::SaveChartAs() {
  std::vector<FileForm> forms;
  for (const std::string& ending : Window().MSChart1.endings) {
    forms.push_back({FormTitle(ending), ending});
  }
  const std::optional<std::string> file = platform_.files.ChooseFile(forms, "Portfolio");
  if (!file) return platform_.boxes.Show("Cancelled: nothing was saved.", BoxIcon::kNone);
  if (file->empty()) return;
  Window().MSChart1.SaveTo(*file);
  try {
    LedgerInsert(ledger_, kProfileTable, {"Profile Name", "Start Period", "End Period"},
                 {*file, "01/01/06", "01/01/07"});
  } catch (const LedgerError& error) {
    platform_.boxes.Show("The chart was saved, but that could not be recorded in the ledger.\n" +
                             std::string(error.what()),
                         BoxIcon::kExclamation);
  }
}

void ResultWindow::OpenPreview() {
  FrmResult& form = Window();
  form.full_height = static_cast<std::int32_t>(std::lround(form.MSChart1.Height()));
  form.full_width = static_cast<std::int32_t>(std::lround(form.MSChart1.Width()));
  desktop_.graph2().Show();
}

void ResultWindow::ChooseColour() {
  Swatch& swatch = Window().picCommonDialog;
  std::optional<std::uint32_t> colour;
  try {
    colour = platform_.colours.ChooseColour(swatch.ForeColour());
  } catch (const std::exception& error) {
    const auto* numbered = dynamic_cast<const std::system_error*>(&error);
    const int number = numbered == nullptr ? 0 : numbered->code().value();
    platform_.boxes.ShowTitled(
        "Error", "Error " + std::to_string(number) + " selecting color.\r" + error.what(),
        BoxIcon::kExclamation);
  }
  if (!colour) return;
  swatch.SetForeColour(*colour);
  Window().MSChart1.SetSeriesColour(Window().picCommonDialog.ForeColour());
}

// If it can't be read, the list returns to what is shown.
void ResultWindow::Choose() {
  ComboBox& list = Window().cbxRun;
  const LedgerScope chosen = choices_.at(static_cast<std::size_t>(list.Index())).scope;
  if (chosen == scope_) return;
  try {
    Reading reading = Read(chosen, tab_ != FrmResult::kChartTab);
    scope_ = chosen;
    Show(std::move(reading));
  } catch (const std::exception&) {
    const auto shown = std::ranges::find(choices_, scope_, &ResultChoice::scope);
    list.SetIndex(static_cast<int>(shown - choices_.begin()));
    throw;
  }
}

void ResultWindow::ChooseTab() {
  const int before = tab_;
  const int chosen = Window().tabSheets.Index();
  if (chosen == before) return;
  try {
    const bool of_account = chosen != FrmResult::kChartTab && chosen != FrmResult::kProgressTab;
    if (of_account && !account_) Show(Read(scope_, true));
    tab_ = chosen;
    ShowTab();
    if (chosen == FrmResult::kProgressTab) progress_.Show();
  } catch (const std::exception&) {
    tab_ = before;
    Window().tabSheets.SetIndex(before);
    ShowTab();
    throw;
  }
}

void ResultWindow::ShowTab() {
  FrmResult& form = Window();
  form.MSChart1.SetVisible(tab_ == FrmResult::kChartTab);
  form.lstStatistics.SetVisible(tab_ == FrmResult::kStatisticsTab);
  form.lblSheetNote.SetVisible(tab_ == FrmResult::kStatisticsTab);
  form.lstOrders.SetVisible(tab_ == FrmResult::kOrdersTab);
  form.cmdCopy.SetVisible(tab_ != FrmResult::kChartTab);
  form.cmdExport.SetVisible(tab_ >= FrmResult::kOrdersTab);
  form.cbxRun.SetVisible(tab_ != FrmResult::kProgressTab);  // it is over all of them
  journal_.SetVisible(tab_ == FrmResult::kJournalTab);
  progress_.SetVisible(tab_ == FrmResult::kProgressTab);
}

void ResultWindow::ShowStatistics() {
  const auto statistics = std::make_shared<const std::vector<Statistic>>(RunStatistics(*account_));
  Window().lstStatistics.SetContent(
      {statistics->size(),
       [statistics](std::size_t row, std::size_t column) {
         const Statistic& statistic = statistics->at(row);
         return column == 0 ? std::string(statistic.name) : statistic.value;
       },
       [statistics](std::size_t row) { return std::string(statistics->at(row).formula); }});
}

void ResultWindow::ShowOrders() {
  std::vector<OrderListRow> rows = ListOrders(account_->back());
  const Table::Sorting& sorting = Window().lstOrders.SortedBy();
  SortOrders(rows, sorting.column, sorting.descending);
  orders_ = std::make_shared<const std::vector<OrderListRow>>(std::move(rows));
  Window().lstOrders.SetContent({orders_->size(),
                                 [orders = orders_](std::size_t row, std::size_t column) {
                                   return orders->at(row).at(column).text;
                                 },
                                 [orders = orders_](std::size_t row) {
                                   return orders->at(row).back().text;  // the note
                                 }});
}

// A second click on a title reverses the order.
void ResultWindow::SortOrdersBy(std::size_t column) {
  Table& list = Window().lstOrders;
  const Table::Sorting before = list.SortedBy();
  list.MarkSorting({column, before.column == column && !before.descending});
  ShowOrders();
}

void ResultWindow::Copy() {
  const FrmResult& form = Window();
  const Table& table = tab_ == FrmResult::kOrdersTab     ? form.lstOrders
                       : tab_ == FrmResult::kJournalTab  ? form.journal.lstTrades
                       : tab_ == FrmResult::kProgressTab ? form.progress.lstFigures
                                                         : form.lstStatistics;
  platform_.clipboard.SetText(table.CopyText());
}

void ResultWindow::Export() {
  const std::string what = tab_ == FrmResult::kOrdersTab    ? "Orders"
                           : tab_ == FrmResult::kJournalTab ? "Journal"
                                                            : "Trades";
  const auto file = platform_.files.ChooseFile({{what + " (*.csv)", "csv"}}, what);
  if (!file || file->empty()) return;
  ReplaceWholeFile(NativePath(*file), tab_ == FrmResult::kOrdersTab ? OrdersCsv(*orders_)
                                      : tab_ == FrmResult::kJournalTab
                                          ? JournalCsv({journal_.Shown()})
                                          : progress_.TradesAsCsv());
}

void ResultWindow::PrintReport() {
  enum Answer : std::size_t { kPrint, kSave, kCancel };
  std::size_t answer = kSave;
  if (platform_.printers.Any()) {
    const bool session = scope_.kind == LedgerScope::Kind::kSession;
    answer =
        platform_.boxes.Ask(session ? "The report of this session:" : "The report of this run:",
                            {"Print", "Save as PDF", "Cancel"});
  }
  if (answer == kCancel) return;
  std::string file;
  if (answer == kSave) {
    file = platform_.files.ChooseFile({{"Report (*.pdf)", "pdf"}}, "Report").value_or("");
    if (file.empty()) return;
  }
  platform_.printers.PrintReport(scope_, file);
  if (!file.empty()) {
    platform_.boxes.Show("The report was saved as " + file + ".", BoxIcon::kInformation);
  }
}

}  // namespace velumar
