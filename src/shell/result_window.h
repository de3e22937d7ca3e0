#pragma once

#include <cstdint>

#include "forms/desktop.h"
#include "ledger/ledger.h"
#include "platform/platform.h"
#include "results/result_figures.h"
#include "results/run_choice.h"
#include "shell/account_sheets.h"
#include "shell/score_board.h"

namespace velumar {

// Parts of a 32-bit colour, each 0 to 255 where the colour has no more than 24 bits.
void SplitColour(std::int32_t colour, std::int16_t& red, std::int16_t& green, std::int16_t& blue);

// The logic of the result window. It reads the ledger when the window loads and when another run is
// chosen; what is ordered meanwhile shows at the next load.
class ResultWindow {
 public:
  ResultWindow(Desktop& desktop, Platform& platform, LedgerConnection& ledger,
               ScoreBoard& score_board);

 private:
  void BindEvents();
  void Load();
  void ListRuns();

  void ShowResultFigures();
  void WriteFigures(const ResultFigures& figures);
  void LoadPortfolioChart();
  void ApplySeriesColour();
  void ApplyChartType();
  void SetChartShadow(std::int16_t mode);
  void SetWallEffect();
  void RestoreChart();

  void PressToolbar(int button);
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
  AccountSheets sheets_;
  ResultFigures figures_;  // of the rows now in the ledger; they outlive the window's loads
  ShownRun run_;
};

}  // namespace velumar
