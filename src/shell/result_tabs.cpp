#include "shell/result_tabs.h"

#include <utility>

#include "base/paths.h"
#include "base/whole_file.h"
#include "results/run_record.h"
#include "results/statistics.h"
#include "shell/event_guard.h"

namespace velumar {

ResultTabs::ResultTabs(Desktop& desktop, Platform& platform, LedgerConnection& ledger)
    : desktop_(desktop), platform_(platform), ledger_(ledger) {
  FrmResult& form = desktop_.Untouched().frmResult;
  const EventGuard guarded(platform_.boxes);
  form.tabSheets.on_click = guarded("Reading the account", [this] { ChooseTab(); });
  form.lstOrders.on_header =
      guarded("Sorting the orders", [this](std::size_t column) { SortOrdersBy(column); });
  form.cmdCopy.on_click = guarded("Copying", [this] { Copy(); });
  form.lstOrders.on_copy = form.lstStatistics.on_copy = form.cmdCopy.on_click;
  form.cmdExport.on_click = guarded("Saving the orders", [this] { ExportOrders(); });
}

void ResultTabs::Load(ShownRun run) {
  FrmResult& form = Window();
  form.lstStatistics.SetColumns({{"Figure"}, {"Value", true}});
  std::vector<Table::Column> columns;
  for (const OrderColumn& column : kOrderColumns) {
    columns.push_back({std::string(column.title), column.numeric});
  }
  form.lstOrders.SetColumns(std::move(columns));
  run_ = run;
  tab_ = FrmResult::kChartTab;
  account_.reset();
  ShowTab();
}

void ResultTabs::ShowRun(ShownRun run) {
  const bool looked_at = tab_ != FrmResult::kChartTab;
  account_ = looked_at ? std::optional(Read(run)) : std::nullopt;
  run_ = run;
  if (!account_) return;
  ShowStatistics();
  ShowOrders();
}

std::vector<RunRecord> ResultTabs::Read(ShownRun run) {
  return ReadAccount(ledger_, RunToRead(ledger_, run));
}

void ResultTabs::ChooseTab() {
  TabBar& tabs = Window().tabSheets;
  if (tabs.Index() == tab_) return;
  try {
    if (tabs.Index() != FrmResult::kChartTab && !account_) {
      std::vector<RunRecord> account = Read(run_);
      on_read();
      account_ = std::move(account);
      ShowStatistics();
      ShowOrders();
    }
  } catch (const std::exception&) {
    tabs.SetIndex(tab_);
    throw;
  }
  tab_ = tabs.Index();
  ShowTab();
}

void ResultTabs::ShowTab() {
  FrmResult& form = Window();
  form.MSChart1.SetVisible(tab_ == FrmResult::kChartTab);
  form.lstStatistics.SetVisible(tab_ == FrmResult::kStatisticsTab);
  form.lblSheetNote.SetVisible(tab_ == FrmResult::kStatisticsTab);
  form.lstOrders.SetVisible(tab_ == FrmResult::kOrdersTab);
  form.cmdCopy.SetVisible(tab_ != FrmResult::kChartTab);
  form.cmdExport.SetVisible(tab_ == FrmResult::kOrdersTab);
}

void ResultTabs::ShowStatistics() {
  const auto statistics = std::make_shared<const std::vector<Statistic>>(RunStatistics(*account_));
  Window().lstStatistics.SetContent(
      {statistics->size(),
       [statistics](std::size_t row, std::size_t column) {
         const Statistic& statistic = statistics->at(row);
         return column == 0 ? std::string(statistic.name) : statistic.value;
       },
       [statistics](std::size_t row) { return std::string(statistics->at(row).formula); }});
}

void ResultTabs::ShowOrders() {
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
void ResultTabs::SortOrdersBy(std::size_t column) {
  Table& list = Window().lstOrders;
  const Table::Sorting before = list.SortedBy();
  list.MarkSorting({column, before.column == column && !before.descending});
  ShowOrders();
}

void ResultTabs::Copy() {
  const FrmResult& form = Window();
  const Table& table = tab_ == FrmResult::kOrdersTab ? form.lstOrders : form.lstStatistics;
  platform_.clipboard.SetText(table.CopyText());
}

void ResultTabs::ExportOrders() {
  const auto file = platform_.files.ChooseFile({{"Orders (*.csv)", "csv"}}, "Orders");
  if (!file || file->empty()) return;
  ReplaceWholeFile(NativePath(*file), OrdersCsv(*orders_));
}

}  // namespace velumar
