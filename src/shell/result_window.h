#pragma once

#include "forms/desktop.h"
#include "ledger/ledger.h"
#include "platform/platform.h"
#include "results/result_figures.h"
#include "results/run_record.h"
#include "shell/result_tabs.h"
#include "shell/score_board.h"

namespace velumar {

// What the controls of the result window do. The ledger is read when the window opens, when
// statistics or orders are first shown, and when another run is chosen. Each time figures, chart
// and tabs are read together, so that they never contradict each other; later orders show at the
// next reading.
class ResultWindow {
 public:
  ResultWindow(Desktop& desktop, Platform& platform, LedgerConnection& ledger,
               ScoreBoard& score_board);

 private:
  // Shows the window; reads the ledger again unless it is visible already.
  void Open();
  void Load();
  void ListRuns();

  // What the figures and the chart show of a run.
  struct Reading {
    ResultFigures figures;
    ChartRows rows;
  };
  // Throws LedgerError.
  Reading Read(const ShownRun& run);
  void Show(Reading reading);
  void ShowResultFigures();
  // Reads the shown run again. Throws LedgerError, and then changes nothing.
  void RefreshFiguresAndChart();
  void WriteFigures(const ResultFigures& figures);
  void ApplyChartType();
  void RestoreChart();

  void SaveChartAs();
  void OpenPreview();
  void ChooseColour();
  void ChooseRun();
  void LoadRun(int number);
  void PrintReport();
  FrmResult& Window() { return desktop_.frmResult(); }

  Desktop& desktop_;
  Platform& platform_;
  LedgerConnection& ledger_;
  ScoreBoard& score_board_;
  ResultTabs tabs_;
  ShownRun run_;
};

}  // namespace velumar
