#pragma once

#include <string>
#include <string_view>

#include "forms/desktop.h"
#include "platform/services.h"
#include "session/sim_session.h"

namespace velumar {

inline constexpr std::string_view kLoadingNotice = "Loading... Please wait.";

// Puts a text on the navigator's status line, creating the navigator unseen where there is none. An
// empty text shows the loading notice.
void SetStatusLine(Desktop& desktop, std::string_view text);

// A bar's date as the user's short date text, "N/A" for 0.
std::string DateDisplayText(std::int32_t date, const LocaleInfo& locale);

// "[SYMBOL]  Date: 1/25/2007 00:00:00  Close: 100.5" of the bar under BarIndex, which must exist,
// after the warning about the chart program, if there is one.
std::string BarLine(const SimSession& session, const LocaleInfo& locale);

}  // namespace velumar
