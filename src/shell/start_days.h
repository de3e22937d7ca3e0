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

// The date of each bar of the chosen series, yyyymmdd, oldest first; none where it can't be read.
std::vector<std::int32_t> BarDays(const SimSession& session, std::string_view interval,
                                  IndexCache& cache);

// A day to start a run at; nothing where no run can start in the series, since a run begins behind
// the bars of an earlier day. "First" leaves one such day, "Last" is the last day with bars.
// "Random" leaves at least 250 bars before it and 100 from it on where the series has them, else as
// many on either side as it has.
std::optional<std::int32_t> StartDay(const std::vector<std::int32_t>& days, DayChoice choice,
                                     std::mt19937_64& random);

}  // namespace velumar
