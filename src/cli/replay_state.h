#pragma once

#include <nlohmann/json.hpp>

#include "cli/replay_world.h"

namespace velumar {

// What a script reads after each command: every field of the session, the texts and colours that
// the user sees, and the bars of the working store. Windows are looked at without loading them; an
// unloaded one shows empty texts. Numbers are exact.
nlohmann::ordered_json StateOf(ReplayWorld& world);

}  // namespace velumar
