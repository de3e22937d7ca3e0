#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "results/run_record.h"

namespace velumar {

// docs/statistics.md has the same names and formulas.
struct Statistic {
  std::string_view name;
  std::string value;  // "-" if the ledger lacks what it needs
  std::string_view formula;
};

// The statistics of the last of the records (see ReadAccount), in display order.
std::vector<Statistic> RunStatistics(const std::vector<RunRecord>& account);

}  // namespace velumar
