#include "shell/reveal_text.h"

#include "base/dates.h"
#include "base/ignoring.h"
#include "marketdata/interval.h"
#include "results/session_result.h"

namespace velumar {

std::string RevealText(const RevealedSession& session, LedgerConnection& ledger,
                       std::string_view date_pattern) {
  std::string text = "You have played " + session.key.symbol;
  if (session.key.name != session.key.symbol) text += ", " + session.key.name;
  text += (session.interval == kDailyInterval ? ", daily" : ", " + session.interval + " min") +
          ", from " + DateText(session.first_day, date_pattern) + " to " +
          DateText(session.last_day, date_pattern) + ".";
  if (session.number == 0 || session.closes.empty()) return text;
  IgnoringErrors([&] {
    const RunRecord own = ReadRecord(ledger, LedgerScope::Session(session.number));
    if (!own.began) return;
    text += "\n" + ResultText(ResultOfSession(own.orders, session.closes, session.first,
                                              session.last, own.began->money_per_point,
                                              static_cast<std::uint64_t>(session.number)));
  });
  return text;
}

}  // namespace velumar
