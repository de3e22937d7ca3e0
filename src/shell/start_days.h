#pragma once

#include <cstdint>
#include <optional>
#include <random>
#include <string_view>
#include <vector>

#include "forms/control.h"
#include "marketdata/index_cache.h"
#include "session/sim_session.h"

namespace velumar {

// The date of each bar of the chosen series, yyyymmdd, oldest first; none if it can't be read.
std::vector<std::int32_t> BarDays(const SimSession& session, std::string_view interval,
                                  IndexCache& cache);

// A day to start a run at; nothing if no run can start in the series, since a run needs bars of an
// earlier day. "First" is the second day with bars, "Last" the last one. "Random" leaves at least
// 250 bars before the start and 100 after it; in a shorter series it is in the middle.
std::optional<std::int32_t> StartDay(const std::vector<std::int32_t>& days, DayChoice choice,
                                     std::mt19937_64& random);

}  // namespace velumar
