#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "forms/desktop.h"
#include "marketdata/index_cache.h"
#include "session/sim_session.h"

namespace velumar {

// A series of more bars than this doesn't fit the 16-bit cursor.
inline constexpr int kLongestSeries = 32768;

// Reads whole series into the bar arrays of the session.
class BarLoader {
 public:
  BarLoader(SimSession& session, Desktop& desktop, IndexCache& cache)
      : session_(session), desktop_(desktop), cache_(cache) {}

  // `symbol` comes back trimmed and upper-cased. The interval is the text of cbxPeriod. Returns the
  // last index of the series, -1 for one without bars. 0 also when there is no such series (the
  // arrays then stay), when reading it failed, and when it is longer than kLongestSeries.
  std::int16_t LoadBars(std::string& symbol, std::string_view directory);

 private:
  std::int16_t Load(const std::string& symbol, std::string_view directory);

  SimSession& session_;
  Desktop& desktop_;
  IndexCache& cache_;
};

}  // namespace velumar
