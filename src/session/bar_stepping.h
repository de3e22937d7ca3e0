#pragma once

#include <cstdint>
#include <optional>

#include "marketdata/index_cache.h"
#include "marketdata/metalib_writer.h"
#include "session/sim_session.h"

namespace velumar {

// Moves the simulated time by changing what the working store holds. The series in memory stays;
// the store holds its bars 0 to BarIndex. Each operation opens the store, works and closes it. All
// need loaded bars (HasBars) and throw MetaLibError; the store then holds what it held before. Only
// if a broken disk prevents that, the step ends where it got to.
class BarStepper {
 public:
  static constexpr int kFastStep = 30;

  BarStepper(SimSession& session, IndexCache& cache) : session_(session), cache_(cache) {}

  bool HasBars() const { return !session_.BarDate.empty(); }

  // In all four, `index` is the newest bar of the store, -1 if it has none, and is updated.

  // Writes the bar after `index`; none after the last bar of the series.
  void FeedBar(std::int16_t& index);
  // Writes up to the 30th bar after `index`, or after bar 0 where the store is empty.
  void FastFeed(std::int16_t& index);
  // Takes bar `index` out.
  void UnfeedBar(std::int16_t& index);
  // Takes up to 30 bars out. Ends on bar 0 at the lowest, and writes that into an empty store.
  void FastUnfeed(std::int16_t& index);

 private:
  enum class Direction : std::uint8_t { kForward, kBackward };
  struct Bars {
    int first = 0;
    int last = -1;  // none
  };

  // Returns the newest bar of the store after the step.
  int Change(Bars bars, Direction direction);
  // The same after a failure; nothing where the store is as it was.
  std::optional<int> Reached(Bars bars, Direction direction) const;
  void Apply(MetaLibWriter& writer, Bars bars, Direction direction) const;
  void TakeBack(Bars bars, Direction direction) const;
  // A store that doesn't know the symbol gets no selection, and the library says so at the next
  // call.
  void Open(MetaLibWriter& writer) const;
  void Append(MetaLibWriter& writer, int bar) const;
  void Delete(MetaLibWriter& writer, int bar) const;
  bool Daily() const;
  void ShowPrice(int bar);
  void ShowMoment(int bar);

  SimSession& session_;
  IndexCache& cache_;
};

}  // namespace velumar
