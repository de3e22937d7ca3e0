#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "forms/desktop.h"
#include "ledger/trades.h"
#include "marketdata/index_cache.h"
#include "platform/platform.h"
#include "progress/played.h"
#include "progress/summary.h"
#include "shell/progress_filter_boxes.h"

namespace velumar {

// What the controls of the progress tab of the result window do. The trades of all sessions are
// read when the tab is first shown. A filter shows the figures at once; what takes rounds of random
// draws follows, while events run, and a newer filter ends it.
class ProgressTab {
 public:
  ProgressTab(Desktop& desktop, Platform& platform, LedgerConnection& ledger, IndexCache& cache);

  // Call it when the result window loads, and when it unloads.
  void SetUp();
  void Leave();
  void SetVisible(bool visible);
  // Reads the trades unless they are read, and shows what they say. Events run while it
  // reads; hiding the tab or closing the window ends that. Throws LedgerError.
  void Show();
  // The listed trades in full, as CSV.
  std::string TradesAsCsv() const;

 private:
  // Returns false if it was ended.
  bool Read();
  void ListChoices();
  void Recompute();
  // Intervals, random traders and risks.
  void ComputeRounds(unsigned computing);
  // How rounds are computed while events run; a newer computation ends them. After a moment the
  // findings say what is computed, and how much of it is done.
  RoundOptions Rounds(unsigned computing, std::string what);
  // Computes first what is not computed yet.
  void SaveReport();
  void ShowFigures();
  void ShowPicture();
  void ShowFindings(std::vector<std::string> lines);
  void SavePicture();
  ProgressControls& Controls() const { return desktop_.Untouched().frmResult.progress; }

  Desktop& desktop_;
  Platform& platform_;
  LedgerConnection& ledger_;
  IndexCache& cache_;
  ProgressFilterBoxes filters_;
  std::vector<PlayedScope> scopes_;
  std::shared_ptr<const Played> played_;  // of the scopes; null before it is read
  ProgressSummary own_;                   // a second group is in its skills, after the whole
  std::optional<ProgressSummary> other_;  // without skill and risk
  bool complete_ = false;                 // the rounds are computed
  std::string hint_;                      // why there is no second group
  unsigned computing_ = 0;                // rises with each filter; an older computation ends
};

}  // namespace velumar
