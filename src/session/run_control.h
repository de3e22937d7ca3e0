#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "ledger/ledger.h"
#include "marketdata/index_cache.h"
#include "platform/platform.h"
#include "session/bar_stepping.h"
#include "session/blind_run.h"
#include "session/card_making.h"
#include "session/chart_side.h"
#include "session/compared_series.h"
#include "session/next_run.h"
#include "session/reveal.h"
#include "session/run_inputs.h"
#include "session/run_source.h"
#include "session/run_view.h"
#include "session/session_record.h"
#include "session/sim_session.h"
#include "session/working_store.h"

namespace velumar {

// A run from the click on "Start" or "Play" to its end, and the four manual steps. The feed
// continues from BarIndex instead of counting on its own, so a manual step moves the feed too.
class RunControl {
 public:
  RunControl(SimSession& session, RunInputs& inputs, RunView& view, Platform& platform,
             IndexCache& cache, LedgerConnection& ledger, ChartSide& chart);

  // Reads what is entered for the next run, claims the working store for it and locks the setup. If
  // no symbol is entered or the folder can't be the store, shows a box, changes nothing and returns
  // false.
  bool ClaimStore();
  // Finds what else can be played: a session, a trade once more, a blind chart.
  RunChooser& Chooser() { return chooser_; }
  // As ClaimStore, for what the chooser has returned, with its directory and account entered: the
  // next Start plays it.
  bool Claim(const NextRun& choice);
  // Begins the run of the last ClaimStore and feeds its bars. Returns when the feed has ended or
  // was stopped, or when a later run began in one of its waits: two loops never feed at once. If
  // the run can't be prepared, shows a box and returns false, and the caller brings the setup
  // window back. No bars are loaded then: those of an earlier run would be fed under the new name.
  // A resumed session doesn't feed: the trader looks at the chart first and clicks "Play".
  bool Start();
  // Begins a run that continues from BarIndex; returns as Start does. Does nothing while a run is
  // being prepared, and only shows a box if another series than the loaded one is entered.
  void Continue();
  // Pauses the run: the feed stops after the current bar or the next. A run that is being prepared
  // pauses after its first bar.
  void EndRun();

  // The steps do nothing while a run is being prepared: no bars are loaded yet, and the chart
  // program's file dialog takes every key. If another series than the loaded one is entered, they
  // only show a box.
  void GoNext();
  void GoFastForward();
  void GoPrevious();
  void GoFastRewind();
  // Asks for a day and moves to its first bar, or to the first one after it, in one step.
  void GoToDate();

  // Shows the bars of a choice with a moment, up to that, without the windows of a run. Nothing of
  // it is written to the ledger. The run that was loaded ends, and its session can be resumed. If
  // the bars can't be shown, shows a box and returns false.
  bool ShowUnrecorded(const NextRun& choice);
  // Feeds it up to a bar, with a short pause after each. Returns false if the feed failed, which a
  // box says, or if something else was shown during that.
  bool PlayOnTo(int bar);
  // The loaded bars are no longer played.
  void Leave();

  // Makes a card of the current bar. Shows how that ended in the status line.
  void MarkBar(CardMaker& maker);

  // Shows the orders of the trade that is played again on the charts, or hides them.
  void ShowEarlierTrade();

  // True if the loaded bars are those of a blind run.
  bool Blind() const;
  // Ends the session of the blind run: its rows get the real symbol, dates and prices, and the
  // chart shows the series as it is, up to the current bar. No bars are loaded then. Shows a box
  // and returns nothing if the ledger can't be written.
  std::optional<RevealedSession> Reveal();

  // Ends a session of the ledger: it can't be resumed. A blind one is revealed. If its bars are
  // loaded, none are afterwards. Throws std::exception with the reason if it can't be ended.
  std::optional<RevealedSession> EndSession(int number);
  // The same without revealing it, and takes the session off the list. Throws LedgerError.
  void ForgetSession(int number);

  // The chart program has opened or closed the chart of another series of the store, by the number
  // of its data file: feeds its bars with the played ones, or removes them. If that isn't possible,
  // shows a box. What opens while a run is being prepared is fed once its bars are loaded.
  void Compare(int file_number);
  void EndCompare(int file_number);

  // True from the click that begins a run until its bars are loaded.
  bool Preparing() const { return session_.Preparing; }
  // True while a feed is running that will feed another bar.
  bool Feeding() const { return feeding_; }

  // Called when a run has begun, and after each bar that is fed and each step. It may end the run,
  // but must not throw.
  void OnMove(std::function<void()> on_move) { on_move_ = std::move(on_move); }

 private:
  // Used by a run to see that a later one has begun.
  using RunNumber = std::uint32_t;

  RunNumber NewRun();
  bool Superseded(RunNumber run) const { return run != newest_run_; }
  // These show a box if they return false.
  bool RequireSymbol();
  bool RequireLoadedSeries();
  bool PrepareRun(const std::optional<LedgerPlayed>& resumed);
  bool PrepareChartAndStore(const std::optional<LedgerPlayed>& resumed);
  void ShowRevealed(const BlindKey& key);
  bool ClaimFor(const NextRun& choice);
  void Restore(const LedgerPlayed& played);
  void ShowStartDay();
  bool Resume(RunNumber run);
  // If it fails, shows a box and returns false: the new orders would join the rows of the last run.
  bool BeginInLedger(bool as_shown);
  void BringChartUp();
  // True if a series was added.
  bool AddCompared(int file_number);
  void ShowRunning();
  void Feed(RunNumber run);
  bool FeedOne(RunNumber run);
  // Says which stops and targets the bars after `before` have reached; then a run that feeds pauses
  // unless that is switched off. Returns true if it does.
  bool PauseAtPlan(int before);
  // Makes a step and refreshes the charts. If the step fails, shows a box; nothing has moved.
  void Step(std::string_view status, const std::function<void(std::int16_t& index)>& step);
  void Step(std::string_view status, void (BarStepper::*step)(std::int16_t& index));

  SimSession& session_;
  RunInputs& inputs_;
  RunView& view_;
  Platform& platform_;
  LedgerConnection& ledger_;
  ChartSide& chart_;
  IndexCache& cache_;
  RunChooser chooser_;
  RunSource source_;
  WorkingStore store_;
  ComparedSeries compared_;
  BarStepper stepper_;
  SessionRecord record_;
  BlindRun blind_;
  std::vector<int> asked_to_compare_;  // while the run is being prepared
  NextRun next_;                       // what "Start" was clicked for
  std::function<void()> on_move_ = [] {};
  RunNumber newest_run_ = 0;
  bool feeding_ = false;
};

}  // namespace velumar
