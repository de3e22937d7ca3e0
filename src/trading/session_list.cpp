#include "trading/session_list.h"

#include <algorithm>

#include "base/ignoring.h"
#include "base/number_text.h"
#include "marketdata/interval.h"
#include "marketdata/metalib_reader.h"
#include "session/blind_mask.h"
#include "session/moment.h"
#include "trading/position_book.h"

namespace velumar {

namespace {

std::optional<int> BarsLeft(const LedgerPlayed& played, IndexCache& cache) {
  std::optional<int> left;
  IgnoringErrors([&] {
    const auto series = ReplayableInterval(played.session.interval);
    if (!series) return;
    MetaLibReader reader(cache);
    reader.OpenDirectory(played.session.directory);
    const auto key = Decoded(played.session.mask);
    reader.SelectSeries(key ? key->symbol : played.session.symbol, series->daily, series->minutes);
    left = std::max(reader.Security().bars - 1 - played.moment.bar, 0);
  });
  return left;
}

SessionLine LineOf(const LedgerPlayed& played, IndexCache& cache) {
  const LedgerSession& session = played.session;
  SessionLine line{.number = session.number,
                   .directory = session.directory,
                   .symbol = session.symbol,
                   .interval = session.interval,
                   .date = played.moment.date,
                   .time = played.moment.time,
                   .bars_left = BarsLeft(played, cache),
                   .touched = played.moment.touched,
                   .ended = session.ended,
                   .blind = !session.mask.empty() && session.symbol == kBlindSymbol};
  IgnoringErrors([&] {
    Book book = BookFromText(played.moment.book);
    if (!played.moment.as_shown) RevaluePositions(book);
    line.held_long = book.LAccum;
    line.held_short = book.SAccum;
    line.open_profit = book.LUnrealisedMoney + book.SUnrealisedMoney;
    line.closed_profit = book.Balance - ToSingle(session.account.money).value_or(book.Balance);
  });
  return line;
}

// A start that was followed by nothing is no session to come back to.
bool WasPlayed(const LedgerPlayed& played) {
  return played.moment.newest_shown > played.moment.first_shown ||
         played.moment.bar != played.moment.first_shown;
}

}  // namespace

std::vector<SessionLine> ListSessions(LedgerConnection& ledger, IndexCache& cache) {
  std::vector<SessionLine> lines;
  for (const LedgerPlayed& played : LedgerSessions(ledger)) {
    if (WasPlayed(played)) lines.push_back(LineOf(played, cache));
  }
  return lines;
}

std::string HoldingText(const SessionLine& line) {
  std::string text;
  const auto add = [&text](float held, const char* side) {
    if (held == 0) return;
    text += (text.empty() ? "" : ", ") + PatternText(held, kQuantityPattern) + " " + side;
  };
  add(line.held_long, "long");
  add(line.held_short, "short");
  return text.empty() ? "none" : text;
}

}  // namespace velumar
