#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "forms/desktop.h"
#include "ledger/ledger.h"
#include "platform/platform.h"
#include "results/order_list.h"
#include "results/result_choices.h"
#include "results/result_figures.h"
#include "results/run_record.h"
#include "shell/journal_tab.h"
#include "shell/progress_tab.h"
#include "shell/score_board.h"

namespace velumar {

// What the controls of the result window do. The ledger is read when the window opens, when
// statistics or orders are first shown, and when another run or session is chosen. Each time
// figures, chart and tabs are read together, so that they never contradict each other; later orders
// show at the next reading.
class ResultWindow {
 public:
  ResultWindow(Desktop& desktop, Platform& platform, LedgerConnection& ledger, IndexCache& cache,
               ScoreBoard& score_board, CardMaker& cards,
               std::function<void(const LedgerOrderKey& entry)> play_again);

 private:
  // Shows the window; reads the ledger again unless it is visible already.
  void Open();
  void Load();
  void SetUpTables();
  void ListChoices();

  // What the window shows of a run or session. Statistics and orders are made of the account, which
  // is read only once one of them is shown.
  struct Reading {
    ResultFigures figures;
    LedgerScope of_figures;
    ChartRows rows;
    std::optional<std::vector<RunRecord>> account;
    Journal journal;  // with the account
  };
  // Throws LedgerError.
  Reading Read(LedgerScope scope, bool with_account);
  // Of the session that the current run belongs to, the figures are those of its newest run: they
  // start at 0 with each run, as the ledger's rows do.
  LedgerScope FiguresScope(LedgerScope scope);
  void Show(Reading reading);
  void WriteFigures(const ResultFigures& figures);
  void ShowStatistics();
  void ShowOrders();

  // If the account can't be read, the tab doesn't change.
  void ChooseTab();
  void ShowTab();
  void SortOrdersBy(std::size_t column);
  void Copy();
  void Export();
  void ApplyChartType();
  void RestoreChart();

  void SaveChartAs();
  void OpenPreview();
  void ChooseColour();
  void Choose();
  void PrintReport();
  FrmResult& Window() { return desktop_.frmResult(); }

  Desktop& desktop_;
  Platform& platform_;
  LedgerConnection& ledger_;
  ScoreBoard& score_board_;
  JournalTab journal_;
  ProgressTab progress_;
  std::vector<ResultChoice> choices_;  // in the order of the list
  LedgerScope scope_ = kCurrentRun;    // shown
  int tab_ = FrmResult::kChartTab;
  std::optional<std::vector<RunRecord>> account_;
  std::shared_ptr<const std::vector<OrderListRow>> orders_;  // as sorted in the table
};

}  // namespace velumar
