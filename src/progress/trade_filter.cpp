#include "progress/trade_filter.h"

#include <algorithm>
#include <string_view>

namespace velumar {

namespace {

template <typename Value>
bool Passes(const std::optional<Value>& wanted, Value value) {
  return !wanted || *wanted == value;
}

bool WasPlayedWithin(const PlayedSession& session, const TradeFilter& filter) {
  if (filter.played_from.empty() && filter.played_to.empty()) return true;
  const std::string_view date = session.PlayedDay();
  return !date.empty() && date >= filter.played_from &&
         (filter.played_to.empty() || date <= filter.played_to);
}

bool SessionPasses(const PlayedSession& session, const TradeFilter& filter) {
  return Passes(filter.symbol, session.symbol) && Passes(filter.interval, session.interval) &&
         Passes(filter.blind, session.blind) && WasPlayedWithin(session, filter) &&
         (filter.sessions.empty() ||
          std::ranges::find(filter.sessions, session.scope) != filter.sessions.end());
}

bool TradePasses(const PlayedTrade& trade, const TradeFilter& filter) {
  return (filter.look_ahead || !trade.look_ahead) && Passes(filter.setup, trade.setup) &&
         Passes(filter.is_long, trade.is_long) && Passes(filter.confidence, trade.confidence) &&
         Passes(filter.weekday, trade.weekday) && Passes(filter.hour, trade.hour) &&
         trade.entry_day >= filter.from_day &&
         (filter.to_day == 0 || trade.entry_day <= filter.to_day);
}

}  // namespace

Selection Select(const Played& played, const TradeFilter& filter) {
  std::vector<char> session_passes;
  session_passes.reserve(played.sessions.size());
  for (const PlayedSession& session : played.sessions) {
    session_passes.push_back(SessionPasses(session, filter) ? 1 : 0);
  }
  Selection selection;
  for (std::size_t i = 0; i < played.trades.size(); ++i) {
    const PlayedTrade& trade = played.trades[i];
    if (session_passes.at(static_cast<std::size_t>(trade.session)) != 0 &&
        TradePasses(trade, filter)) {
      selection.push_back(static_cast<std::int32_t>(i));
    }
  }
  return selection;
}

std::vector<SelectedSession> BySession(const Played& played,
                                       std::span<const std::int32_t> selection) {
  const auto session_of = [&](std::size_t i) { return played.TradeAt(selection[i]).session; };
  std::vector<SelectedSession> sessions;
  for (std::size_t first = 0, end = 0; first < selection.size(); first = end) {
    while (end < selection.size() && session_of(end) == session_of(first)) ++end;
    sessions.push_back({session_of(first), selection.subspan(first, end - first)});
  }
  return sessions;
}

}  // namespace velumar
