#pragma once

#include <string>

#include "results/run_choice.h"

namespace velumar {

// The orders of a run as CSV, as they were placed, behind a line of titles: each with what the side
// holds and the realised money after it, in plain numbers and ISO dates. A holding that too large
// an offset wiped out has a line of its own, and its note says so; an order placed with hindsight
// is noted as such.
std::string OrdersCsv(const RunRecord& run);

}  // namespace velumar
