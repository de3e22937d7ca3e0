#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "forms/desktop.h"
#include "platform/platform.h"
#include "session/bar_loading.h"
#include "session/bar_stepping.h"
#include "session/chart_side.h"
#include "session/ledger_runs.h"
#include "session/sim_session.h"
#include "session/working_store.h"

namespace velumar {

// The road of a run, from the click on a start button to its end, and the four steps by hand.
class RunControl {
 public:
  RunControl(SimSession& session, Desktop& desktop, Platform& platform, IndexCache& cache,
             LedgerConnection& ledger, ChartSide& chart);

  // Takes from the setup window what the run that "Start" is about to begin replays, claims the
  // working store for it and locks the window's boxes. False after a message box if no symbol is
  // chosen or the folder can't be the store; nothing else has changed then.
  bool ClaimStore();
  // The setup window as argument begins the run of the last ClaimStore, the navigator one that goes
  // on from BarIndex. Returns when the feed has ended, was stopped, or gave way to a later BeginRun
  // whose click fell into one of its waits: two loops never feed at once. Does nothing while a run
  // is being prepared. Returns false if a run from the setup window could not be prepared: the user
  // has read why, no bars are loaded, and the setup window is to come back.
  bool BeginRun(const Form& window);
  // Only sets the flag that the loop looks at once per bar.
  void EndRun();
  // Gives the setup window's boxes back to the user, who may choose the next run's series there
  // while a feed goes on: it keeps to its own.
  void UnlockSetup();

  // A run that is being prepared takes no step: no bars are loaded yet, the store is being filled,
  // and the chart program's file dialog takes every key. Nor do bars of another series than the
  // setup window names, after a box.
  void GoNext();
  void GoFastForward();
  void GoPrevious();
  void GoFastRewind();

  // True while a loop is on that will feed a bar.
  bool Feeding() const { return feeding_; }

 private:
  // A run knows by its number whether a later one has begun.
  using RunNumber = std::uint32_t;

  bool Superseded(RunNumber run) const { return run != newest_run_; }
  // False after a box.
  bool RequireSymbol();
  bool RequireLoadedSeries();
  bool PrepareRun();
  bool PrepareChartAndStore();
  bool Resume(RunNumber run);
  void LockSetup();
  void BringChartUp();
  void ShowRunning();
  void ReadDelay();
  void LoadSeries();
  void Feed(RunNumber run);
  bool FeedOne(RunNumber run);
  void ShowPlay();
  // Runs a step and the refresh after it. A failing library leaves all as it was, after a box.
  void Step(std::string_view status, void (BarStepper::*step)(std::int16_t& index));
  // A box: what failed, and the error's text. Number and sentence of a library error come first.
  void ShowFailure(const std::string& what, const std::exception& error);

  SimSession& session_;
  Desktop& desktop_;
  Platform& platform_;
  ChartSide& chart_;
  LedgerRuns ledger_;
  BarLoader loader_;
  WorkingStore store_;
  BarStepper stepper_;
  RunSeries next_;  // what "Start" was clicked for
  RunNumber newest_run_ = 0;
  bool feeding_ = false;
};

}  // namespace velumar
