#pragma once

#include <cstddef>
#include <vector>

#include "marketdata/bar.h"
#include "marketdata/index_cache.h"
#include "marketdata/metalib_reader.h"
#include "marketdata/metalib_writer.h"
#include "session/sim_session.h"

namespace velumar {

// Other series of the run's directory, shown next to the played one. The store holds their bars up
// to the moment of the newest played bar and never a later one:
//   of a series with the interval of the played one, the bars labelled up to that moment;
//   of any other series, the bars after which its next bar has begun by that moment. So a bar is
//   never early, whether its label is its begin or its end.
// Daily bars begin with their day, so a run over minutes shows those of the days before.
class ComparedSeries {
 public:
  static constexpr std::size_t kMost = 8;

  ComparedSeries(const SimSession& session, IndexCache& cache) : session_(session), cache_(cache) {}

  // Compares a series, by the number of its data file, from the next Follow on. Returns false,
  // and does nothing, if it is compared or played, and in a blind run. Throws MetaLibError if there
  // is no such series, if it can't be replayed, or if kMost are compared.
  bool Add(int file_number);
  // Removes its bars from the store. Does nothing if it isn't compared. Throws MetaLibError.
  void Remove(int file_number);
  // For the next run, whose store is empty.
  void Clear() { all_.clear(); }

  // Makes the store hold what belongs to bar `played` of the played series, -1 for nothing. Throws
  // MetaLibError; the next call then completes it.
  void Follow(int played);

 private:
  struct Series {
    SecurityInfo security;
    BarArrays bars;
    std::vector<BarKey> moments;
    int stored = kUnknown;  // bars in the store
  };
  static constexpr int kUnknown = -1;

  Series Read(const SecurityInfo& security) const;
  int Closed(const Series& series, int played) const;
  static void Store(MetaLibWriter& writer, Series& series, int count);

  const SimSession& session_;
  IndexCache& cache_;
  std::vector<Series> all_;
};

}  // namespace velumar
