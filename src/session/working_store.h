#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "forms/desktop.h"
#include "marketdata/index_cache.h"
#include "marketdata/metalib_error.h"
#include "marketdata/metalib_reader.h"
#include "marketdata/metalib_writer.h"
#include "platform/platform.h"
#include "session/sim_session.h"
#include "session/store_folder.h"

namespace velumar {

// Prepares the working store for a run that starts at the picked date.
class WorkingStore {
 public:
  WorkingStore(SimSession& session, Desktop& desktop, Platform& platform, IndexCache& cache)
      : session_(session), desktop_(desktop), platform_(platform), cache_(cache) {}

  // Claims the folder SimDir for a run over DataDir and holds it until the next claim or the end of
  // the program. If it can't be the store, shows a box, changes nothing and returns false.
  bool Claim();

  // Empties the claimed folder and copies the files that a chart needs besides the bars. SimDir and
  // DataDir get a closing "\". If old bars are left or the index files can't be copied, shows a box
  // and returns false.
  bool Refill();

  // Writes into SimDir what the run's series holds before the first bar on or after the start day,
  // and its first bar in any case. A day after the last bar starts 250 bars after the first, or in
  // the middle of a series of at most 251. -1 when the store is ready; 0 after a message box when
  // it is not.
  std::int16_t PrepareStore();

 private:
  bool Reported(const std::function<void()>& step);
  void Fill(MetaLibReader& reader, MetaLibWriter& writer);
  static void WriteHistory(const MetaLibReader& reader, MetaLibWriter& writer,
                           std::int32_t cut_start);
  void OpenStore(MetaLibWriter& writer);
  void SelectBoth(MetaLibReader& reader, MetaLibWriter& writer);
  void RequireKnownMinutes(int minutes) const;
  void RequireReplayable(const MetaLibReader& reader) const;
  std::int32_t CutStart(MetaLibReader& reader) const;
  std::string Explained(const MetaLibError& error) const;
  bool StoredInLowerCase() const;

  SimSession& session_;
  Desktop& desktop_;
  Platform& platform_;
  IndexCache& cache_;
  std::optional<StoreFolder> folder_;  // of the last claim
};

// The text of a library error for a box: its number, a carriage return, its sentence.
std::string LibraryErrorText(const MetaLibError& error);

}  // namespace velumar
