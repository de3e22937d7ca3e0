#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "results/trade_list.h"

namespace velumar {

// docs/statistics.md explains each with the same words.
struct Statistic {
  std::string_view name;
  std::string value;  // "-" where the ledger doesn't support one
  std::string_view formula;
};

// The statistics of the last of the runs (see ReadAccount), in the order in which they are shown.
std::vector<Statistic> RunStatistics(const std::vector<RunRecord>& account);

}  // namespace velumar
