#pragma once

#include <cstdint>
#include <string_view>

#include "marketdata/index_cache.h"
#include "session/sim_session.h"

namespace velumar {

// A series of more bars than this doesn't fit the 16-bit cursor.
inline constexpr int kLongestSeries = 32768;

// Ours, for a series that can't be replayed.
inline constexpr int kNotReplayable = 1720;

// Reads whole series into the bar arrays of the session.
class BarLoader {
 public:
  BarLoader(SimSession& session, IndexCache& cache) : session_(session), cache_(cache) {}

  // Reads the run's symbol and interval from a directory. Returns the last index of the series, -1
  // for one without bars. Throws MetaLibError if there is no such series, it can't be read or is
  // longer than kLongestSeries.
  std::int16_t LoadBars(std::string_view directory);

 private:
  SimSession& session_;
  IndexCache& cache_;
};

}  // namespace velumar
