#pragma once

#include <optional>
#include <random>
#include <string>
#include <vector>

#include "ledger/ledger.h"
#include "marketdata/index_cache.h"
#include "platform/platform.h"
#include "session/blind_mask.h"
#include "session/run_inputs.h"
#include "session/sim_session.h"

namespace velumar {

// What a run plays: a series and, if it is played blind, its key.
struct NextRun {
  RunSeries series;
  std::optional<BlindKey> key = {};
  std::optional<LedgerPlayed> resumed = {};  // the session that goes on with it
  bool recorded = true;                      // in the ledger
  int bars = 0;                              // to play after the start; 0: all
};

// Finds out what the next run plays. Shows a box with the reason and returns nothing if that can't
// be played.
class RunChooser {
 public:
  RunChooser(const SimSession& session, const RunInputs& inputs, Platform& platform,
             LedgerConnection& ledger, IndexCache& cache);

  // The entered series or, if a blind run is entered, one drawn at random.
  std::optional<NextRun> Entered();
  // A blind run of any security of the entered directory and interval, of that many bars.
  std::optional<NextRun> Drawn(int bars);
  // A session of the ledger. If its series has changed since, asks whether to go on after the last
  // bar that was played; nothing if the trader doesn't.
  std::optional<NextRun> Session(int number);
  // A new session at the bar before the entry of a trade.
  std::optional<NextRun> Trade(const LedgerOrderKey& entry);

 private:
  // These throw std::exception with the reason.
  std::optional<NextRun> OfSession(int number);
  NextRun OfTrade(const LedgerOrderKey& entry);
  NextRun OfSeries();
  NextRun Draw(const RunSeries& entered, const std::string& symbol, int bars_after);
  std::vector<std::string> ShownLately();
  bool MayGoOn(NextRun& choice);
  int BarsLeftOfDrill(const LedgerMoment& moment) const;

  const SimSession& session_;
  const RunInputs& inputs_;
  Platform& platform_;
  LedgerConnection& ledger_;
  IndexCache& cache_;
  std::mt19937_64 random_;  // of blind runs
};

}  // namespace velumar
