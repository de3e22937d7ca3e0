#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "marketdata/index_cache.h"
#include "marketdata/interval.h"
#include "marketdata/metalib_error.h"
#include "marketdata/metalib_reader.h"
#include "marketdata/metalib_writer.h"
#include "platform/services.h"
#include "session/run_view.h"
#include "session/sim_session.h"
#include "session/store_folder.h"

namespace velumar {

// The replay's own error number, for a series that can't be replayed.
inline constexpr int kNotReplayable = 1720;

// Owns the files of the working store, which the chart program reads. What they may hold:
//   before Refill      what the last run left; no chart is open
//   after Refill       index files that list the securities without dates, the chart program's own
//                      files, and no bars
//   after Prepare      the bars of the run's series before its start day, at least the first bar
//   from then on       bars 0 to BarIndex, as BarStepper moves it, and the bars of compared series
//                      up to that moment (compared_series.h)
// A bar after BarIndex is never there, not even for a moment or after a disk error.
class WorkingStore {
 public:
  WorkingStore(SimSession& session, RunView& view, MessageBoxes& boxes, IndexCache& cache)
      : session_(session), view_(view), boxes_(boxes), cache_(cache) {}

  // Claims the folder SimDir for a run over DataDir and holds it until the next claim or the end of
  // the program. If it can't be the store, shows a box, changes nothing and returns false. Going
  // back to the setup does not release it, since the feed may continue.
  bool Claim();

  // Empties the claimed folder and copies the other files that a chart needs. SimDir and DataDir
  // get a closing "\". If old bars are left or the index files can't be copied, shows a box and
  // returns false.
  bool Refill();

  // Writes into SimDir what the run's series holds before the first bar on or after the start day,
  // and its first bar in any case. A day after the last bar starts 250 bars after the first, or in
  // the middle of a series of at most 251. Before anything is written, refuses a series that can't
  // be replayed: one that is unknown, has no bars or more than kLongestSeries, has bars of unknown
  // minutes, or has several bars of a day without times. Shows a box and returns false if the store
  // isn't ready. With a number of bars, writes that many instead, whatever the start day.
  bool Prepare(std::optional<int> bars = {});

  // Loads the run's series into the session: first from the store, whose last bar becomes BarIndex,
  // then all of it from the data directory. Throws MetaLibError.
  void LoadSeries();

  // Reads a series from its data directory. Throws MetaLibError.
  BarArrays ReadSeries(const RunSeries& series) const;

 private:
  bool Reported(const std::function<void()>& step);
  void Fill(MetaLibReader& reader, MetaLibWriter& writer, std::optional<int> bars);
  static int BarsBefore(const MetaLibReader& reader, std::int32_t cut_start);
  void OpenStore(MetaLibWriter& writer);
  void SelectBoth(MetaLibReader& reader, MetaLibWriter& writer);
  void RequireKnownMinutes(int minutes) const;
  void RequireReplayable(const MetaLibReader& reader) const;
  void RequireLength(const MetaLibReader& reader) const;
  std::string SeriesName() const;
  // Looks at the index alone: another security's damaged data file must not stop a run.
  bool AnySecurity(
      std::string_view directory,
      const std::function<bool(const std::string& symbol, int interval)>& wanted) const;
  std::int16_t LoadBars(std::string_view directory);
  std::int32_t CutStart(MetaLibReader& reader) const;
  std::string Explained(const MetaLibError& error) const;
  bool StoredInLowerCase() const;

  SimSession& session_;
  RunView& view_;
  MessageBoxes& boxes_;
  IndexCache& cache_;
  std::optional<StoreFolder> folder_;  // of the last claim
};

// A library error as the text of a box: number, carriage return, sentence.
std::string LibraryErrorText(const MetaLibError& error);

}  // namespace velumar
