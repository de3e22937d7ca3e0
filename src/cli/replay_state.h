#pragma once

#include <nlohmann/json.hpp>

#include "cli/replay_world.h"

namespace velumar {

// The answer to a command: every field of the session, the texts and colours that the trader sees,
// and the bars of the working store. Doesn't load windows; an unloaded one has empty texts. Numbers
// are exact.
nlohmann::ordered_json StateOf(ReplayWorld& world);

}  // namespace velumar
