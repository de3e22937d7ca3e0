#pragma once

#include <optional>
#include <string>

#include "marketdata/bar.h"
#include "marketdata/index_cache.h"
#include "session/blind_mask.h"
#include "session/sim_session.h"

namespace velumar {

// The replay's own error number, for a series that can't be replayed.
inline constexpr int kNotReplayable = 1720;

// A series of a data directory. Throws MetaLibError for one that is unknown or can't be replayed:
// one that has no bars or more than kLongestSeries, has bars of unknown minutes, or has several
// bars of a day without times.
BarArrays ReadReplayable(const RunSeries& series, IndexCache& cache);

// A run's series as it is shown: masked if it has a key.
struct ShownSeries {
  BarArrays bars;
  // The first bar on or after the start day. If the day is after the last bar, 250 bars after the
  // first, or in the middle of a series of at most 251.
  int start = 0;
};
// Throws what ReadReplayable throws; the error of a blind run names no security.
ShownSeries ReadRunSeries(const RunSeries& series, const std::optional<BlindKey>& key,
                          IndexCache& cache);

// Where the run's series comes from: the only object that reads it from the data directory and, in
// a blind run, the only one that knows which security it is. So nothing that is read later can give
// it away.
class RunSource {
 public:
  RunSource(const SimSession& session, IndexCache& cache) : session_(session), cache_(cache) {}

  // The next reads are of SimSession::Run; with a key, of what it hides.
  void SetKey(std::optional<BlindKey> key) { key_ = std::move(key); }
  const std::optional<BlindKey>& Key() const { return key_; }

  ShownSeries Read() const { return ReadRunSeries(session_.Run, key_, cache_); }

 private:
  const SimSession& session_;
  IndexCache& cache_;
  std::optional<BlindKey> key_;
};

}  // namespace velumar
