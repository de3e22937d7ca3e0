#pragma once

#include <optional>
#include <string>
#include <vector>

#include "progress/random_traders.h"
#include "progress/ruin.h"

namespace velumar {

// What a group of trades says, in plain sentences: skill or luck, the setups that stand out, and
// the risk ahead. `skills` begins with the whole selection; setups follow.
std::vector<std::string> FindingsOf(const std::vector<SkillOrLuck>& skills,
                                    const std::optional<RiskAhead>& risk);

}  // namespace velumar
