#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "forms/desktop.h"
#include "marketdata/index_cache.h"
#include "marketdata/metalib_writer.h"
#include "session/sim_session.h"

namespace velumar {

// Moves the simulated time by changing what the working store holds. The series in memory stays;
// BarIndex says how far the store reaches. Each operation opens the store, works and closes it. All
// need loaded bars (HasBars) and throw MetaLibError; the store then holds what it held before. Only
// where a broken disk takes nothing back does a step stand as far as it came.
class BarStepper {
 public:
  static constexpr int kFastStep = 30;

  BarStepper(SimSession& session, Desktop& desktop, IndexCache& cache)
      : session_(session), desktop_(desktop), cache_(cache) {}

  bool HasBars() const { return !session_.BarDate.empty(); }

  // Writes bar `index`; behind the last bar it writes none. `index` comes back as the bar now
  // newest; it is wide enough to name the bar behind the longest series. Always returns -1.
  std::int16_t FeedBar(int& index, std::string& symbol);
  // Writes up to 30 bars behind `index`. Returns the bar now newest, also left in `index`.
  std::int16_t FastFeed(std::int16_t& index, std::string& symbol);
  // Takes bar `index` out; `index` comes back one lower. Always returns -1.
  std::int16_t UnfeedBar(std::int16_t& index, std::string& symbol);
  // Takes up to 30 bars out, never bar 0. Returns the bar now newest.
  std::int16_t FastUnfeed(std::int16_t& index, std::string& symbol);

 private:
  enum class Direction : std::uint8_t { kForward, kBackwardOne, kBackward };
  struct Bars {
    int first = 0;
    int last = -1;  // none
  };

  // The newest bar of the step that the store holds behind it.
  int Change(std::string& symbol, Bars bars, Direction direction);
  // The same after a failure; nothing where the store is as it was.
  std::optional<int> Reached(const std::string& symbol, Bars bars, Direction direction) const;
  void Apply(MetaLibWriter& writer, Bars bars, Direction direction) const;
  void TakeBack(const std::string& symbol, Bars bars, Direction direction) const;
  // A store that doesn't know the symbol gets no selection, and the library says so at the next
  // call.
  void Open(MetaLibWriter& writer, const std::string& symbol) const;
  void Append(MetaLibWriter& writer, int bar) const;
  void Delete(MetaLibWriter& writer, int bar) const;
  void DeleteIfStored(MetaLibWriter& writer, int bar) const;
  bool Daily() const;
  void ShowPrice(int bar);
  void ShowMoment(int bar);

  SimSession& session_;
  Desktop& desktop_;
  IndexCache& cache_;
};

}  // namespace velumar
