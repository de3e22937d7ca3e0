#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "ledger/ledger.h"
#include "marketdata/index_cache.h"
#include "platform/platform.h"
#include "session/bar_loading.h"
#include "session/bar_stepping.h"
#include "session/chart_side.h"
#include "session/run_inputs.h"
#include "session/run_view.h"
#include "session/sim_session.h"
#include "session/working_store.h"

namespace velumar {

// A run from the click on a start button to its end, and the four steps by hand.
class RunControl {
 public:
  RunControl(SimSession& session, RunInputs& inputs, RunView& view, Platform& platform,
             IndexCache& cache, LedgerConnection& ledger, ChartSide& chart);

  // Takes what the setup window has chosen for the next run, claims the working store for it and
  // locks the window's boxes. False after a message box if no symbol is chosen or the folder can't
  // be the store; nothing has changed then.
  bool ClaimStore();
  // Begins the run of the last ClaimStore and feeds its bars. Returns when the feed has ended, was
  // stopped, or gave way to a later run that was begun in one of its waits: two loops never feed at
  // once. False if the run could not be prepared: a box has said why, no bars are loaded, and the
  // caller brings the setup window back.
  bool Start();
  // Begins a run that goes on from BarIndex, and returns as Start does. Does nothing while a run is
  // being prepared, and only shows a box if the setup window names another series than the bars'.
  void Continue();
  // Sets the flag that the loop reads once per bar.
  void EndRun();

  // The steps do nothing while a run is being prepared: no bars are loaded yet, the store is being
  // filled, and the chart program's file dialog takes every key. If the setup window names another
  // series than the bars', a box says so instead.
  void GoNext();
  void GoFastForward();
  void GoPrevious();
  void GoFastRewind();

  // True while a loop is running that will feed another bar.
  bool Feeding() const { return feeding_; }

 private:
  // A run knows by its number whether a later one has begun.
  using RunNumber = std::uint32_t;

  RunNumber NewRun();
  bool Superseded(RunNumber run) const { return run != newest_run_; }
  // False after a box.
  bool RequireSymbol();
  bool RequireLoadedSeries();
  bool PrepareRun();
  bool PrepareChartAndStore();
  bool Resume(RunNumber run);
  // Moves the rows of the last run to the archive and begins a new one. If the ledger can't, shows
  // a box and returns false: orders of a new run would join the rows of the old one.
  bool BeginInLedger();
  void BringChartUp();
  void ShowRunning();
  void LoadSeries();
  void Feed(RunNumber run);
  bool FeedOne(RunNumber run);
  // Runs a step and the refresh after it. If the step fails, a box says why and nothing has moved.
  void Step(std::string_view status, void (BarStepper::*step)(std::int16_t& index));
  // Shows a box with what failed and the error's text. A library error's number comes first.
  void ShowFailure(const std::string& what, const std::exception& error);

  SimSession& session_;
  RunInputs& inputs_;
  RunView& view_;
  Platform& platform_;
  IndexCache& cache_;
  LedgerConnection& ledger_;
  ChartSide& chart_;
  WorkingStore store_;
  BarStepper stepper_;
  RunSeries next_;  // what "Start" was clicked for
  RunNumber newest_run_ = 0;
  bool feeding_ = false;
};

}  // namespace velumar
