#pragma once

#include <string>

#include "platform/services.h"
#include "session/run_view.h"
#include "session/sim_session.h"

namespace velumar {

// Shows account and current bar. If the trade panel is closed, it opens hidden and starts the
// account anew.
void ShowStatus(const SimSession& session, RunView& view, const LocaleInfo& locale);

// The status line of the bar under BarIndex, which must exist: "[SYMBOL]  Date: 1/25/2007 00:00:00
// Close: 100.5", after the warning about the chart program, if there is one.
std::string BarLine(const SimSession& session, const LocaleInfo& locale);

}  // namespace velumar
