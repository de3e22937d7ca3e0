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

// The result window's two sheets next to its chart: statistics and orders of one run. They are read
// from the ledger when one of them is first shown.
class AccountSheets {
 public:
  AccountSheets(Desktop& desktop, Platform& platform, LedgerConnection& ledger);

  // As the window comes up with a run: with its chart.
  void Load(ShownRun run);
  // Throws a LedgerError where the run can't be read; the sheets then show what they showed.
  void ShowRun(ShownRun run);

  // Runs after the sheets were read because one was first shown. If it throws, the tab stays where
  // it was.
  std::function<void()> on_read;

 private:
  void BindEvents();
  void SetUpTables();
  void ChooseSheet();
  std::vector<RunRecord> Read(ShownRun run);
  void ShowSheet();
  void ShowAccount();
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
  int sheet_ = FrmResult::kChartSheet;
  std::optional<std::vector<RunRecord>> account_;            // of the run, once it was read
  std::shared_ptr<const std::vector<OrderListRow>> orders_;  // sorted as they are shown
};

}  // namespace velumar
