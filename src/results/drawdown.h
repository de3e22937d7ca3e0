#pragma once

#include <optional>
#include <string>

#include "results/run_record.h"

namespace velumar {

// The deepest fall of the realised money below what it had reached before.
struct Drawdown {
  double money = 0;
  std::optional<double> share;  // of what it had reached; nothing where that wasn't above 0
  // Date and time; "start" where the fall began with the starting money. Empty without a fall.
  std::string from;
  std::string to;
};

// Measured from the starting money, so a loss of the first trade counts. Nothing when the run
// didn't note it, and without orders.
std::optional<Drawdown> MaximumDrawdown(const RunRecord& run);

}  // namespace velumar
