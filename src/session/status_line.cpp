#include "session/status_line.h"

#include "base/dates.h"
#include "base/number_text.h"
#include "base/text.h"

namespace velumar {

void SetStatusLine(Desktop& desktop, std::string_view text) {
  desktop.form2().Label6.SetText(text.empty() ? kLoadingNotice : text);
}

std::string DateDisplayText(std::int32_t date, const LocaleInfo& locale) {
  return DateText(date, locale.ShortDatePattern());
}

std::string BarLine(const SimSession& session, const LocaleInfo& locale) {
  const auto bar = static_cast<std::size_t>(session.BarIndex);
  return session.ChartWarning + "[" + session.Run.symbol +
         "]  Date: " + DateDisplayText(session.BarDate.at(bar), locale) + " " +
         PatternText(session.BarTime.at(bar), kTimePattern) +
         "  Close: " + PatternText(session.BarClose.at(bar), kClosePattern);
}

}  // namespace velumar
