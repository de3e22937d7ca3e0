#pragma once

#include <cstdint>
#include <string_view>

#include "marketdata/index_cache.h"
#include "session/sim_session.h"

namespace velumar {

// A series of more bars than this doesn't fit the 16-bit cursor.
inline constexpr int kLongestSeries = 32768;

// The replay's own error number, for a series that can't be replayed.
inline constexpr int kNotReplayable = 1720;

// Reads the series of session.Run from a directory into the bar arrays. Returns the last index of
// the series, -1 for one without bars. Throws MetaLibError if there is no such series, it can't be
// read or is longer than kLongestSeries.
std::int16_t LoadBars(SimSession& session, IndexCache& cache, std::string_view directory);

}  // namespace velumar
