#pragma once

#include <functional>
#include <optional>
#include <string>

#include "marketdata/index_cache.h"
#include "marketdata/metalib_writer.h"
#include "platform/services.h"
#include "session/run_source.h"
#include "session/run_view.h"
#include "session/sim_session.h"
#include "session/store_folder.h"

namespace velumar {

// Owns the files of the working store, which the chart program reads. What they may hold:
//   before Refill      what the last run left; no chart is open
//   after Refill       index files that list the securities without dates, the chart program's own
//                      files, and no bars; in a blind run only the played series, under its blind
//                      name, and no other files
//   after Prepare      the bars of the run's series before its start day, at least the first bar
//   from then on       bars 0 to BarIndex, as BarStepper moves it, and the bars of compared series
//                      up to that moment (compared_series.h)
// A bar after BarIndex is never there, not even for a moment or after a disk error.
class WorkingStore {
 public:
  WorkingStore(SimSession& session, const RunSource& source, RunView& view, MessageBoxes& boxes,
               IndexCache& cache)
      : session_(session), source_(source), view_(view), boxes_(boxes), cache_(cache) {}

  // Claims the folder SimDir for a run over DataDir and holds it until the next claim or the end of
  // the program. If it can't be the store, shows a box, changes nothing and returns false. Going
  // back to the setup does not release it, since the feed may continue.
  bool Claim();

  // Empties the claimed folder and copies the other files that a chart needs, or, for a blind run,
  // creates index files that list only its series. SimDir and DataDir
  // get a closing "\". If old bars are left or the index files can't be copied, shows a box and
  // returns false.
  bool Refill();

  // Writes into SimDir what the run's series holds before its start, and its first bar in any case.
  // Before anything is written, refuses a series that can't be replayed. Shows a box and returns
  // false if the store isn't ready. With a number of bars, writes that many instead, whatever the
  // start day.
  bool Prepare(std::optional<int> bars = {});

  // Loads the run's series into the session; with a number of bars, only that many after those of
  // the store, so that the run ends there. The last bar of the store becomes BarIndex. Throws
  // MetaLibError.
  void LoadSeries(int bars_to_play = 0);

 private:
  bool Reported(const std::function<void()>& step);
  void Fill(MetaLibWriter& writer, std::optional<int> bars);
  void OpenStore(MetaLibWriter& writer);
  int StoredBars() const;

  SimSession& session_;
  const RunSource& source_;
  RunView& view_;
  MessageBoxes& boxes_;
  IndexCache& cache_;
  std::optional<StoreFolder> folder_;  // of the last claim
};

}  // namespace velumar
