#pragma once

#include <string>

#include "forms/desktop.h"
#include "session/sim_session.h"

namespace velumar {

// Why the bars in memory can't be fed, stepped or traded: none are loaded, or the setup window
// names another symbol or interval than theirs. Empty if they can.
std::string LoadedSeriesProblem(const SimSession& session, Desktop& desktop);

}  // namespace velumar
