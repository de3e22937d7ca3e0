#pragma once

#include <cstdint>
#include <optional>

#include "marketdata/index_cache.h"
#include "marketdata/metalib_writer.h"
#include "session/compared_series.h"
#include "session/sim_session.h"

namespace velumar {

// Moves the simulated time by changing the bars in the working store. The series in memory stays as
// it is; the store holds its bars 0 to BarIndex. Each step opens the store, changes it and closes
// it. All steps need loaded bars (HasBars). A step that fails throws MetaLibError and leaves the
// store as it was. If a broken disk prevents that, the step ends at the bar that it reached. The
// compared series follow each step.
class BarStepper {
 public:
  static constexpr int kFastStep = 30;

  BarStepper(SimSession& session, IndexCache& cache, ComparedSeries& compared)
      : session_(session), cache_(cache), compared_(compared) {}

  bool HasBars() const { return !session_.BarDate.empty(); }

  // In all four, `index` is the newest bar of the store, -1 if it has none, and is updated.

  // Writes the bar after `index`. Does nothing after the last bar of the series.
  void FeedBar(std::int16_t& index);
  // Writes up to the 30th bar after `index`, or after bar 0 if the store is empty.
  void FastFeed(std::int16_t& index);
  // Removes bar `index`. Removing bar 0 empties the store.
  void UnfeedBar(std::int16_t& index);
  // Removes up to 30 bars, but never bar 0, and writes bar 0 into an empty store.
  void FastUnfeed(std::int16_t& index);
  // Moves to a bar of the series in one step, in either direction.
  void MoveTo(std::int16_t& index, int bar);

 private:
  enum class Direction : std::uint8_t { kForward, kBackward };
  struct Bars {
    int first = 0;
    int last = -1;  // none
  };

  // Returns the newest bar of the store after the step.
  int Change(Bars bars, Direction direction);
  int ChangePlayed(Bars bars, Direction direction);
  // The same after a failure; nothing if the store is as it was.
  std::optional<int> Reached(Bars bars, Direction direction) const;
  void Apply(MetaLibWriter& writer, Bars bars, Direction direction) const;
  void TakeBack(Bars bars, Direction direction) const;
  // Selects nothing if the store doesn't list the symbol; the next call then throws.
  void Open(MetaLibWriter& writer) const;
  bool Daily() const;
  void ShowPrice(int bar);
  void ShowMoment(int bar);

  SimSession& session_;
  IndexCache& cache_;
  ComparedSeries& compared_;
};

}  // namespace velumar
