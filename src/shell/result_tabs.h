#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "forms/desktop.h"
#include "ledger/ledger.h"
#include "platform/platform.h"
#include "results/order_list.h"
#include "results/run_record.h"

namespace velumar {

// The result window's tabs "Statistics" and "Orders". They are read from the ledger when one of
// them is first shown.
class ResultTabs {
 public:
  ResultTabs(Desktop& desktop, Platform& platform, LedgerConnection& ledger);

  // Called when the window opens. Shows the chart.
  void Load(ShownRun run);
  // If the run can't be read, throws LedgerError and the tabs keep their contents.
  void ShowRun(ShownRun run);

  // Called after the tabs were read because one was first shown. If it throws, the tab doesn't
  // change.
  std::function<void()> on_read;

 private:
  void ChooseTab();
  std::vector<RunRecord> Read(ShownRun run);
  void ShowTab();
  void ShowStatistics();
  void ShowOrders();
  void SortOrdersBy(std::size_t column);
  void Copy();
  void ExportOrders();
  FrmResult& Window() { return desktop_.frmResult(); }

  Desktop& desktop_;
  Platform& platform_;
  LedgerConnection& ledger_;
  ShownRun run_;
  int tab_ = FrmResult::kChartTab;
  std::optional<std::vector<RunRecord>> account_;            // of the run, once read
  std::shared_ptr<const std::vector<OrderListRow>> orders_;  // as sorted in the table
};

}  // namespace velumar
