#include "shell/result_window.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <iterator>
#include <memory>
#include <span>
#include <utility>

#include "base/ignoring.h"
#include "base/paths.h"
#include "marketdata/replacement_file.h"
#include "results/portfolio_chart.h"
#include "results/run_choice.h"
#include "results/statistics.h"
#include "shell/event_guard.h"
#include "shell/window_shaping.h"

namespace velumar {

namespace {

constexpr int kFirstType = 2;     // "2D Line" in the list of chart types
constexpr float kTitleBar = 360;  // twips that a border takes above the window

// By the index in the list of chart types; the last entry chooses nothing.
constexpr std::array kTypes = {kChart2DBar,  kChart3DBar,  kChart2DLine,
                               kChart2DArea, kChart3DLine, kChart3DStep};

std::string FormTitle(const std::string& ending) {
  if (ending == "bmp") return "Pictures (*.bmp)";
  std::string capitals;
  for (const char letter : ending) capitals += static_cast<char>(std::toupper(letter));
  return capitals + " (*." + ending + ")";
}

ChartRows RowsOf(std::vector<PortfolioChartRow> portfolio) {
  ChartRows rows;
  rows.labels.reserve(portfolio.size());
  rows.values.reserve(portfolio.size());
  for (PortfolioChartRow& row : portfolio) {
    rows.labels.push_back(std::move(row.label));
    rows.values.push_back(double{row.value});
  }
  return rows;
}

void CentreOnScreen(Form& form, const Screen& screen) {
  form.SetLeft(std::max(0.F, (screen.WidthTwips() - form.Width()) / 2));
  form.SetTop(std::max(0.F, (screen.HeightTwips() - form.Height() - kTitleBar) / 2));
}

}  // namespace

void SplitColour(std::int32_t colour, std::int16_t& red, std::int16_t& green, std::int16_t& blue) {
  constexpr int kByte = 256;
  red = static_cast<std::int16_t>(colour % kByte);
  green = static_cast<std::int16_t>(colour / kByte % kByte);
  blue = static_cast<std::int16_t>(colour / kByte / kByte);
}

ResultWindow::ResultWindow(Desktop& desktop, Platform& platform, LedgerConnection& ledger,
                           ScoreBoard& score_board)
    : desktop_(desktop), platform_(platform), ledger_(ledger), score_board_(score_board) {
  BindEvents();
}

void ResultWindow::BindEvents() {
  const Desktop::Windows windows = desktop_.Untouched();
  const auto guarded = [this](auto handler) { return Guarded(platform_.boxes, handler); };
  windows.form1.imgGraph.on_click = windows.form3.imgGraph.on_click =
      guarded([this] { Window().Show(); });
  FrmResult& form = windows.frmResult;
  form.on_load = guarded([this] { Load(); });
  form.on_close = form.on_escape = guarded([this] { desktop_.Unload(Window()); });
  form.Toolbar1.on_button = guarded([this](int button) { PressToolbar(button); });
  form.Combo1.on_click = guarded([this] { ApplyChartType(); });
  form.Combo1.on_key_up = guarded([this](int) { ApplyChartType(); });
  form.picCommonDialog.on_click = guarded([this] { ChooseColour(); });
  form.lnkScore.on_click = guarded([this] { score_board_.Open(); });
  BindSheets(form);
}

void ResultWindow::BindSheets(FrmResult& form) {
  const auto guarded = [this](auto handler) { return Guarded(platform_.boxes, handler); };
  form.cbxRun.on_click = guarded([this] { ChooseRun(); });
  form.tabSheets.on_click = guarded([this] { ChooseSheet(); });
  form.lstOrders.on_header = guarded([this](std::size_t column) { SortOrdersBy(column); });
  form.cmdCopy.on_click = guarded([this] { Copy(); });
  form.lstOrders.on_copy = form.lstStatistics.on_copy = form.cmdCopy.on_click;
  form.cmdExport.on_click = guarded([this] { ExportOrders(); });
}

void ResultWindow::Load() {
  FrmResult& form = Window();
  form.SetTopmost(true);
  CentreOnScreen(form, platform_.screen);
  form.MSChart1.SetPlace(0, 0);
  form.MSChart1.SetSize(form.Frame3.Width(), form.Frame3.Height());
  form.chwd = static_cast<std::int32_t>(std::lround(form.MSChart1.Width()));
  form.chht = static_cast<std::int32_t>(std::lround(form.MSChart1.Height()));
  SetUpTables();
  run_ = kRunNow;
  sheet_ = FrmResult::kChartSheet;
  account_.reset();
  ShowSheet();
  ListRuns();
  ShowResultFigures();
  ApplySeriesColour();
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
}

// A ledger that can't be read says so with the figures.
void ResultWindow::ListRuns() {
  std::vector<ComboBox::Row> rows;
  IgnoringErrors([&] {
    for (const RunChoice& run : RunChoices(ledger_)) rows.push_back({run.title, run.number});
  });
  ComboBox& list = Window().cbxRun;
  list.SetEnabled(!rows.empty());
  list.SetRows(std::move(rows));
  if (list.Enabled()) list.SetIndex(0);
}

void ResultWindow::ShowResultFigures() {
  Window().Combo1.SetIndex(kFirstType);
  try {
    LoadResultFigures(ledger_, figures_);
    WriteFigures(figures_);
    LoadPortfolioChart();
  } catch (const LedgerError& error) {
    WriteFigures(figures_);
    platform_.boxes.Show(error.what(), BoxIcon::kExclamation);
  }
}

void ResultWindow::WriteFigures(const ResultFigures& figures) {
  for (const ResultFigureText& figure : ResultFigureTexts(figures)) {
    Window().Find(figure.label)->SetText(figure.text);
  }
}

void ResultWindow::LoadPortfolioChart() {
  std::vector<PortfolioChartRow> rows = velumar::LoadPortfolioChart(ledger_);
  if (!rows.empty()) Window().MSChart1.SetRows(RowsOf(std::move(rows)));
}

void ResultWindow::ApplySeriesColour() {
  std::int16_t red = 0;
  std::int16_t green = 0;
  std::int16_t blue = 0;
  SplitColour(static_cast<std::int32_t>(Window().picCommonDialog.ForeColour()), red, green, blue);
  Window().MSChart1.SetSeriesColour(red, green, blue);
}

void ResultWindow::ApplyChartType() {
  const int index = Window().Combo1.Index();
  if (index < 0 || index >= static_cast<int>(kTypes.size())) return;
  Window().MSChart1.SetType(kTypes.at(static_cast<std::size_t>(index)));
}

void ResultWindow::SetChartShadow(std::int16_t mode) { Window().MSChart1.SetShadow(mode == 0); }

void ResultWindow::SetWallEffect() { Window().MSChart1.SetWallWhite(); }

void ResultWindow::RestoreChart() {
  Window().MSChart1.ToDefaults();
  Window().Combo1.SetIndex(kFirstType);  // the list tells what the chart shows
}

void ResultWindow::PressToolbar(int button) {
  switch (button) {
    case FrmResult::kSaveAs:
      return SaveChartAs();
    case FrmResult::kPreview:
      return OpenPreview();
    case FrmResult::kShadow:
      return SetChartShadow(0);
    case FrmResult::kNoShadow:
      return SetChartShadow(1);
    case FrmResult::kEffect:
      return SetWallEffect();
    case FrmResult::kDefault:
      return RestoreChart();
    case FrmResult::kReport:
      return PrintReport();
    case FrmResult::kClose:
      return desktop_.Unload(Window());
    default:
      return;
  }
}

// The file stays when its row in the ledger can't be written.
void ResultWindow::SaveChartAs() {
  std::vector<FileForm> forms;
  for (const std::string& ending : Window().MSChart1.endings) {
    forms.push_back({FormTitle(ending), ending});
  }
  const std::optional<std::string> file = platform_.files.ChooseFile(forms);
  if (!file) return platform_.boxes.Show("Cancelled: nothing was saved.", BoxIcon::kNone);
  if (file->empty()) return;
  Window().MSChart1.SaveTo(*file);
  LedgerInsert(ledger_, kProfileTable, {"Profile Name", "Start Period", "End Period"},
               {*file, "01/01/06", "01/01/07"});
}

void ResultWindow::OpenPreview() {
  FrmResult& form = Window();
  form.chht = static_cast<std::int32_t>(std::lround(form.MSChart1.Height()));
  form.chwd = static_cast<std::int32_t>(std::lround(form.MSChart1.Width()));
  desktop_.graph2().Show();
}

void ResultWindow::ChooseColour() {
  Swatch& swatch = Window().picCommonDialog;
  const auto colour = platform_.colours.ChooseColour(swatch.ForeColour());
  if (!colour) return;
  swatch.SetForeColour(*colour);
  ApplySeriesColour();
}

// What can't be read leaves the list at the run that is shown.
void ResultWindow::ChooseRun() {
  ComboBox& list = Window().cbxRun;
  const int number = list.Rows().at(static_cast<std::size_t>(list.Index())).data;
  if (number == run_) return;
  try {
    LoadRun(number);
  } catch (const std::exception&) {
    const auto shown = std::ranges::find(list.Rows(), run_, &ComboBox::Row::data);
    list.SetIndex(static_cast<int>(shown - list.Rows().begin()));
    throw;
  }
}

// An archived run has figures of its own: none of another run's fills its gaps.
void ResultWindow::LoadRun(int number) {
  ResultFigures archived;
  ResultFigures& figures = number == kRunNow ? figures_ : archived;
  LoadResultFigures(ledger_, figures, number);
  ChartRows rows = RowsOf(velumar::LoadPortfolioChart(ledger_, number));
  const bool looked_at = sheet_ != FrmResult::kChartSheet;
  account_ = looked_at ? std::optional(ReadAccount(ledger_, number)) : std::nullopt;
  run_ = number;
  WriteFigures(figures);
  Window().MSChart1.SetRows(std::move(rows));
  if (account_) ShowAccount();
}

void ResultWindow::ChooseSheet() {
  TabBar& tabs = Window().tabSheets;
  if (tabs.Index() == sheet_) return;
  try {
    if (tabs.Index() != FrmResult::kChartSheet && !account_) {
      account_ = ReadAccount(ledger_, run_);
      ShowAccount();
    }
  } catch (const std::exception&) {
    tabs.SetIndex(sheet_);
    throw;
  }
  sheet_ = tabs.Index();
  ShowSheet();
}

void ResultWindow::ShowAccount() {
  ShowStatistics();
  ShowOrders();
}

void ResultWindow::ShowSheet() {
  FrmResult& form = Window();
  form.MSChart1.SetVisible(sheet_ == FrmResult::kChartSheet);
  form.lstStatistics.SetVisible(sheet_ == FrmResult::kStatisticsSheet);
  form.lstOrders.SetVisible(sheet_ == FrmResult::kOrdersSheet);
  form.cmdCopy.SetVisible(sheet_ != FrmResult::kChartSheet);
  form.cmdExport.SetVisible(sheet_ == FrmResult::kOrdersSheet);
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
                                 nullptr});
}

// A second click on a title turns the order round.
void ResultWindow::SortOrdersBy(std::size_t column) {
  Table& list = Window().lstOrders;
  const Table::Sorting before = list.SortedBy();
  list.MarkSorting({column, before.column == column && !before.descending});
  ShowOrders();
}

void ResultWindow::Copy() {
  const FrmResult& form = Window();
  const Table& table = sheet_ == FrmResult::kOrdersSheet ? form.lstOrders : form.lstStatistics;
  platform_.clipboard.SetText(table.CopyText());
}

void ResultWindow::ExportOrders() {
  const auto file = platform_.files.ChooseFile({{"Orders (*.csv)", "csv"}});
  if (!file || file->empty()) return;
  const std::string csv = OrdersCsv(*orders_);
  ReplacementFile replacement{NativePath(*file)};
  replacement.Write(std::as_bytes(std::span(csv)));
  replacement.Commit();
}

void ResultWindow::PrintReport() {
  enum Answer : std::size_t { kPrint, kSave, kCancel };
  std::size_t answer = kSave;
  if (platform_.printers.Any()) {
    answer = platform_.boxes.Ask("The report of this run:", {"Print", "Save as PDF", "Cancel"});
  }
  if (answer == kCancel) return;
  if (answer == kPrint) return platform_.printers.PrintReport(run_, "");
  const auto file = platform_.files.ChooseFile({{"Report (*.pdf)", "pdf"}});
  if (file && !file->empty()) platform_.printers.PrintReport(run_, *file);
}

}  // namespace velumar
