#pragma once

#include "forms/desktop.h"
#include "session/sim_session.h"

namespace velumar {

// How far the run is, on the navigator's progress line: the bars shown since its start of all that
// will come. Its tooltip counts them and tells the time left when each further bar takes
// `ms_per_bar`. Touches no window that isn't loaded.
void ShowRunProgress(Desktop& desktop, const SimSession& session, int ms_per_bar);

}  // namespace velumar
